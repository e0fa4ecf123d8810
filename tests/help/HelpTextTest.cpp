// The help file held against the program: whatever has a caption is told of, every link leads somewhere, and the file
// needs no other.
#include <gtest/gtest.h>
#include <gumbo.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QRegularExpression>
#include <QSet>
#include <functional>

#include "FWebTables.h"
#include "RunningProgram.h"

namespace {

// The file as the build made it, parsed.
class HelpText : public ::testing::Test {
 protected:
  void SetUp() override {
    bytes_ = FileBytes(CORVANE_HELP_FILE);
    ASSERT_GT(bytes_.size(), 10000) << CORVANE_HELP_FILE;
    output_ = gumbo_parse_with_options(&kGumboDefaultOptions, bytes_.constData(), size_t(bytes_.size()));
    Walk([this](const GumboNode& node) {
      if (node.type == GUMBO_NODE_TEXT || node.type == GUMBO_NODE_WHITESPACE) text_ += node.v.text.text;
      // Words of neighbouring cells are no one phrase.
      if (node.type == GUMBO_NODE_ELEMENT && !IsInline(node.v.element.tag)) text_ += " | ";
    });
    text_ = text_.simplified();
  }
  void TearDown() override {
    if (output_) gumbo_destroy_output(&kGumboDefaultOptions, output_);
  }

  static bool IsInline(GumboTag tag) {
    static const QSet<int> tags = {GUMBO_TAG_A,    GUMBO_TAG_B,   GUMBO_TAG_EM,
                                   GUMBO_TAG_CODE, GUMBO_TAG_KBD, GUMBO_TAG_IMG};
    return tags.contains(tag);
  }

  // Every node below the document, the text of styles left out.
  void Walk(const std::function<void(const GumboNode&)>& visit) const { WalkFrom(*output_->root, visit); }
  static void WalkFrom(const GumboNode& node, const std::function<void(const GumboNode&)>& visit) {
    visit(node);
    if (node.type != GUMBO_NODE_ELEMENT || node.v.element.tag == GUMBO_TAG_STYLE) return;
    for (unsigned i = 0; i < node.v.element.children.length; ++i)
      WalkFrom(*static_cast<const GumboNode*>(node.v.element.children.data[i]), visit);
  }

  QStringList Values(const char* attribute) const {
    QStringList values;
    Walk([&](const GumboNode& node) {
      if (node.type != GUMBO_NODE_ELEMENT) return;
      if (const auto* found = gumbo_get_attribute(&node.v.element.attributes, attribute)) values += found->value;
    });
    return values;
  }

  // Without what only the menu's look needs: the mark of the letter, and doubled blanks.
  static QString Plain(const QString& caption) { return QString(caption).remove(u'&').simplified(); }
  // As words of their own, not as a piece of longer ones.
  bool Tells(const QString& caption) const {
    const QString words = Plain(caption);
    for (qsizetype at = text_.indexOf(words); at >= 0; at = text_.indexOf(words, at + 1)) {
      const qsizetype end = at + words.size();
      const bool begins = at == 0 || !text_[at - 1].isLetter() || !words.front().isLetter();
      const bool ends = end == text_.size() || !text_[end].isLetter() || !words.back().isLetter();
      if (begins && ends) return true;
    }
    return false;
  }

  QByteArray bytes_;
  GumboOutput* output_ = nullptr;
  QString text_;
};

TEST_F(HelpText, ParsesWithoutAnError) {
  EXPECT_EQ(0u, output_->errors.length);
  EXPECT_TRUE(output_->document->v.document.has_doctype);
}

TEST_F(HelpText, TellsOfEveryMenuEntry) {
  int told = 0;
  for (const MenuRow& row : MenuRows()) {
    const QString caption = row.caption;
    if (caption == "-" || caption.startsWith("pop")) continue;
    EXPECT_TRUE(Tells(caption)) << row.caption;
    ++told;
  }
  EXPECT_GT(told, 80);
}

TEST_F(HelpText, TellsOfEveryToolByTheNameThatItShows) {
  for (const ToolRow& row : ToolRows()) EXPECT_TRUE(Tells(row.toolTip)) << row.toolTip;
  for (const FontRow& row : FontRows()) {
    EXPECT_TRUE(!row.toolTip || Tells(row.toolTip)) << row.toolTip;
    EXPECT_TRUE(row.kind == FontRow::Kind::List || row.kind == FontRow::Kind::Swatch || Tells(row.text)) << row.text;
  }
  for (const WorkRow& row : WorkRows()) {
    EXPECT_TRUE(Tells(row.toolTip)) << row.toolTip;
    EXPECT_TRUE(Tells(row.label)) << row.label;
  }
}

TEST_F(HelpText, TellsOfEveryButtonFieldAndFrameOfEveryWindow) {
  RunningProgram run;
  ASSERT_TRUE(run.Start());
  int told = 0;
  const auto check = [&](const QObject* thing, const QString& caption) {
    if (Plain(caption).isEmpty()) return;
    EXPECT_TRUE(Tells(caption)) << qPrintable(thing->objectName()) << ": " << qPrintable(caption);
    ++told;
  };
  for (const QWidget* window : QApplication::topLevelWidgets()) {
    for (const auto* action : window->findChildren<QAction*>())
      if (!action->objectName().startsWith("mPop") && action->objectName().startsWith(u'm'))
        check(action, action->text());
    for (const auto* button : window->findChildren<QAbstractButton*>()) check(button, button->text());
    for (const auto* frame : window->findChildren<QGroupBox*>()) check(frame, frame->title());
    for (const auto* label : window->findChildren<QLabel*>())
      if (label->buddy()) check(label, label->text());
  }
  EXPECT_GT(told, 150);
}

TEST_F(HelpText, EveryLinkLeadsToAPlaceInIt) {
  const QStringList places = Values("id");
  EXPECT_EQ(places.size(), QSet<QString>(places.begin(), places.end()).size()) << "a place twice";
  const QStringList links = Values("href");
  EXPECT_GT(links.size(), 60);
  for (const QString& link : links) {
    EXPECT_TRUE(link.startsWith(u'#')) << qPrintable(link);
    EXPECT_TRUE(places.contains(link.mid(1))) << qPrintable(link);
  }
}

TEST_F(HelpText, NeedsNoOtherFileAndHasNoScripts) {
  for (const QString& source : Values("src")) {
    ASSERT_TRUE(source.startsWith("data:image/")) << qPrintable(source.left(60));
    const QByteArray data = QByteArray::fromBase64(source.mid(source.indexOf(u',') + 1).toLatin1());
    EXPECT_FALSE(QImage::fromData(data).isNull()) << qPrintable(source.left(60));
  }
  Walk([](const GumboNode& node) {
    if (node.type != GUMBO_NODE_ELEMENT) return;
    for (const GumboTag tag : {GUMBO_TAG_SCRIPT, GUMBO_TAG_LINK, GUMBO_TAG_IFRAME, GUMBO_TAG_OBJECT})
      EXPECT_NE(tag, node.v.element.tag);
    for (unsigned i = 0; i < node.v.element.attributes.length; ++i) {
      const auto* attribute = static_cast<const GumboAttribute*>(node.v.element.attributes.data[i]);
      EXPECT_FALSE(QString(attribute->name).startsWith("on")) << attribute->name;
    }
  });
  const QString all = QString::fromUtf8(bytes_);
  EXPECT_FALSE(all.contains("url(")) << "in the style";
  EXPECT_FALSE(all.contains("@import"));
}

TEST_F(HelpText, EveryPictureHasWordsAndFewBytes) {
  int pictures = 0;
  Walk([&](const GumboNode& node) {
    if (node.type != GUMBO_NODE_ELEMENT || node.v.element.tag != GUMBO_TAG_IMG) return;
    const auto* words = gumbo_get_attribute(&node.v.element.attributes, "alt");
    ASSERT_TRUE(words);
    const QString source = gumbo_get_attribute(&node.v.element.attributes, "src")->value;
    // The small drawings stand beside their names.
    if (source.startsWith("data:image/png")) {
      EXPECT_NE(QString(), words->value);
      ++pictures;
    }
  });
  EXPECT_GE(pictures, 15);
  EXPECT_LT(bytes_.size(), 1024 * 1024);
}

TEST_F(HelpText, IsWhatTheHelpCommandHandsToTheDesktop) {
  RunningProgram run;
  ASSERT_TRUE(run.Start());
  ASSERT_TRUE(PutFile(run.PathInApp("cvn2.hlp"), bytes_));
  ASSERT_TRUE(run.Choose("mCVNHelp"));
  ASSERT_EQ(1, run.test.platform.shell.Opened.size());
  const QString shown = run.test.platform.shell.Opened[0].file;
  EXPECT_TRUE(shown.endsWith(".html")) << qPrintable(shown);
  EXPECT_EQ(bytes_, FileBytes(shown));
  EXPECT_TRUE(run.Dialogs().Boxes.isEmpty());
}

}  // namespace
