#include "HostDialogs.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <functional>

#include "TestPlatform.h"

namespace {

// Looks at the modal dialog once it is up, and ends it.
template <typename Dialog>
class WhenShown {
 public:
  explicit WhenShown(std::function<void(Dialog&)> act) : act_(std::move(act)) {
    QObject::connect(&timer_, &QTimer::timeout, [this] {
      auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
      if (!dialog) return;
      timer_.stop();
      Seen = true;
      act_(*dialog);
    });
    timer_.start(0);
  }
  bool Seen = false;

 private:
  std::function<void(Dialog&)> act_;
  QTimer timer_;
};

struct BoxCase {
  MessageButtons buttons;
  QMessageBox::StandardButtons shown;
  QMessageBox::StandardButton pressed;
  MessageAnswer answer;
};

TEST(HostDialogs, AMessageBoxShowsItsTextAndGivesTheButton) {
  const BoxCase cases[] = {
      {MessageButtons::Ok, QMessageBox::Ok, QMessageBox::Ok, MessageAnswer::Ok},
      {MessageButtons::OkCancel, QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok, MessageAnswer::Ok},
      {MessageButtons::OkCancel, QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Cancel, MessageAnswer::Cancel},
      {MessageButtons::YesNo, QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes, MessageAnswer::Yes},
      {MessageButtons::YesNo, QMessageBox::Yes | QMessageBox::No, QMessageBox::No, MessageAnswer::No},
      {MessageButtons::YesNoCancel, QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::No,
       MessageAnswer::No},
  };
  for (const BoxCase& one : cases) {
    WhenShown<QMessageBox> look([&](QMessageBox& box) {
      EXPECT_EQ("Corvane", box.windowTitle());
      EXPECT_EQ("<b>1 < 2</b>", box.text());
      EXPECT_EQ(Qt::PlainText, box.textFormat());
      EXPECT_EQ(QMessageBox::Question, box.icon());
      EXPECT_EQ(one.shown, box.standardButtons());
      box.button(one.pressed)->click();
    });
    HostDialogs dialogs;
    EXPECT_EQ(one.answer, dialogs.ShowMessage(nullptr, "<b>1 < 2</b>", MessageIcon::Question, one.buttons, "Corvane"));
    EXPECT_TRUE(look.Seen);
  }
}

TEST(HostDialogs, AClosedMessageBoxCountsAsItsWeakestAnswer) {
  const std::pair<MessageButtons, MessageAnswer> cases[] = {
      {MessageButtons::Ok, MessageAnswer::Ok},
      {MessageButtons::OkCancel, MessageAnswer::Cancel},
      {MessageButtons::YesNo, MessageAnswer::No},
      {MessageButtons::YesNoCancel, MessageAnswer::Cancel},
  };
  for (const auto& [buttons, answer] : cases) {
    WhenShown<QMessageBox> look([](QMessageBox& box) {
      EXPECT_EQ(QMessageBox::NoIcon, box.icon());
      EXPECT_EQ("Discard?", box.windowTitle());
      box.reject();
    });
    HostDialogs dialogs;
    EXPECT_EQ(answer, dialogs.ShowMessage(nullptr, "text", MessageIcon::None, buttons, "Discard?"));
    EXPECT_TRUE(look.Seen);
  }
}

TEST(HostDialogs, TheInputBoxGivesNothingForCancelAndForAnEmptyAnswer) {
  struct Row {
    bool accept;
    const char* typed;
  };
  const Row rows[] = {{true, "typed"}, {true, ""}, {false, "typed"}};
  for (const Row& row : rows) {
    WhenShown<QInputDialog> look([&](QInputDialog& box) {
      EXPECT_EQ("Create Link", box.windowTitle());
      EXPECT_EQ("Enter URL for link.", box.labelText());
      EXPECT_EQ("http://", box.textValue());
      box.setTextValue(row.typed);
      row.accept ? box.accept() : box.reject();
    });
    HostDialogs dialogs;
    EXPECT_EQ(row.accept ? row.typed : "",
              dialogs.AskText(nullptr, "Enter URL for link.", "Create Link", "http://", {}));
    EXPECT_TRUE(look.Seen);
  }
}

TEST(HostDialogs, TheOpenDialogTakesPatternsFolderAndTitle) {
  QTemporaryDir scratch;
  ASSERT_TRUE(PutFile(scratch.filePath("a b.gif"), "x"));
  WhenShown<QFileDialog> look([&](QFileDialog& dialog) {
    EXPECT_EQ("Select Picture", dialog.windowTitle());
    EXPECT_EQ(QStringList{"Web Graphics(*.gif *.jpg *.png)"}, dialog.nameFilters());
    EXPECT_EQ(QFileDialog::AcceptOpen, dialog.acceptMode());
    EXPECT_EQ(QFileDialog::ExistingFile, dialog.fileMode());
    EXPECT_FALSE(dialog.testOption(QFileDialog::DontUseNativeDialog));
    EXPECT_EQ(QDir(scratch.path()).canonicalPath(), dialog.directory().canonicalPath());
    dialog.selectFile(scratch.filePath("a b.gif"));
    static_cast<QDialog&>(dialog).done(QDialog::Accepted);
  });
  HostDialogs dialogs;
  EXPECT_EQ(QDir::toNativeSeparators(scratch.filePath("a b.gif")),
            dialogs.ChooseOpenFile(nullptr, "Select Picture",
                                   {{"Web Graphics(*.gif;*.jpg;*.png)", "*.gif;*.jpg;*.png"}}, scratch.path()));
  EXPECT_TRUE(look.Seen);
}

TEST(HostDialogs, TheSaveDialogAsksNothingAndKnowsTheSuffix) {
  WhenShown<QFileDialog> look([](QFileDialog& dialog) {
    EXPECT_EQ("Save Text to File", dialog.windowTitle());
    EXPECT_EQ(QFileDialog::AcceptSave, dialog.acceptMode());
    EXPECT_EQ(QFileDialog::AnyFile, dialog.fileMode());
    EXPECT_TRUE(dialog.testOption(QFileDialog::DontConfirmOverwrite));
    EXPECT_EQ("html", dialog.defaultSuffix());
    dialog.reject();
  });
  HostDialogs dialogs;
  EXPECT_EQ("", dialogs.ChooseSaveFile(nullptr, "Save Text to File", {{"HTML Files(*.html)", "*.html"}}, "html"));
  EXPECT_TRUE(look.Seen);
}

// The folder in which the dialog opens, from which the user picks that path, or cancels for "".
QString StartOf(HostDialogs& dialogs, const QString& title, const QString& pattern, const QString& pick = {}) {
  QString folder;
  WhenShown<QFileDialog> look([&](QFileDialog& dialog) {
    folder = dialog.directory().canonicalPath();
    if (pick.isEmpty()) return dialog.reject();
    dialog.selectFile(pick);
    static_cast<QDialog&>(dialog).done(QDialog::Accepted);
  });
  dialogs.ChooseOpenFile(nullptr, title, {{"Files", pattern}}, QString());
  EXPECT_TRUE(look.Seen);
  return folder;
}

TEST(HostDialogs, FileDialogsOpenWhereTheUsersFilesAreAndThenWhereTheyLastLed) {
  QTemporaryDir scratch;
  const QString home = QDir::home().canonicalPath();
  ASSERT_TRUE(QDir::home().mkpath("Pictures") && QDir::home().mkpath("Documents"));
  ASSERT_TRUE(PutFile(scratch.filePath("a.gif"), "x"));
  const QString there = QDir(scratch.path()).canonicalPath();
  HostDialogs dialogs;
  QDir::setCurrent("/");  // of no account
  EXPECT_EQ(home + "/Pictures", StartOf(dialogs, "Select Picture", "*.gif;*.jpg", scratch.filePath("a.gif")));
  EXPECT_EQ(there, StartOf(dialogs, "Select Picture", "*.gif;*.jpg"));
  EXPECT_EQ(home + "/Documents", StartOf(dialogs, "Select HTML file", "*.html"));
  // The program's own folders aren't gone back to.
  const QString own = QCoreApplication::applicationDirPath() + "/own.gif";
  ASSERT_TRUE(PutFile(own, "x"));
  StartOf(dialogs, "Select Picture", "*.gif;*.jpg", own);
  QFile::remove(own);
  EXPECT_EQ(there, StartOf(dialogs, "Select Picture", "*.gif;*.jpg"));
  ASSERT_TRUE(scratch.remove());
  EXPECT_EQ(home + "/Pictures", StartOf(dialogs, "Select Picture", "*.gif;*.jpg"));
}

TEST(HostDialogs, WhatTheInputBoxOffersIsThereToGoOnWith) {
  WhenShown<QInputDialog> look([&](QInputDialog& box) {
    auto* const line = box.findChild<QLineEdit*>();
    ASSERT_TRUE(line);
    QCoreApplication::processEvents();
    EXPECT_FALSE(line->hasSelectedText());
    EXPECT_EQ(line->cursorPosition(), 7);
    EXPECT_GT(line->width(),
              line->fontMetrics().horizontalAdvance("http://www.example.com/a/rather/long/address.html"));
    QTest::keyClicks(line, "x.yy");
    box.accept();
  });
  HostDialogs dialogs;
  EXPECT_EQ("http://x.yy", dialogs.AskText(nullptr, "Enter URL for link.", "Create Link", "http://", {}));
  EXPECT_TRUE(look.Seen);
}

TEST(HostDialogs, TheInputBoxTakesNoAnswerThatIsFoundWrongAndTellsWhy) {
  WhenShown<QInputDialog> look([](QInputDialog& box) {
    auto* const line = box.findChild<QLineEdit*>();
    auto* const reason = box.findChild<QLabel*>("Reason");
    ASSERT_TRUE(line && reason);
    auto* const ok = box.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
    EXPECT_TRUE(ok->isEnabled());
    EXPECT_EQ("", reason->text());
    const QSize before = box.size();
    QTest::keyClicks(line, "a/");
    EXPECT_FALSE(ok->isEnabled());
    EXPECT_EQ("<i>no slash", reason->text());
    EXPECT_EQ("<i>no slash", line->accessibleDescription());
    EXPECT_TRUE(reason->isVisible());
    EXPECT_GE(reason->y(), line->geometry().bottom());
    EXPECT_EQ(before, box.size());
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_TRUE(box.isVisible());
    QTest::keyClick(line, Qt::Key_Backspace);
    EXPECT_EQ("", reason->text());
    QTest::keyClick(line, Qt::Key_Return);
    EXPECT_FALSE(box.isVisible());
    box.accept();
  });
  HostDialogs dialogs;
  const auto check = [](const QString& text) { return text.contains('/') ? QString("<i>no slash") : QString(); };
  EXPECT_EQ("a", dialogs.AskText(nullptr, "Enter name for project.", "Save Project", QString(), check));
  EXPECT_TRUE(look.Seen);
}

TEST(HostDialogs, TheFolderDialogGivesNothingOnCancel) {
  WhenShown<QFileDialog> look([](QFileDialog& dialog) {
    EXPECT_EQ("Select folder", dialog.windowTitle());
    EXPECT_EQ(QFileDialog::Directory, dialog.fileMode());
    dialog.reject();
  });
  HostDialogs dialogs;
  EXPECT_EQ("", dialogs.ChooseFolder(nullptr, "Select folder"));
  EXPECT_TRUE(look.Seen);
}

TEST(NameFilter, RewritesTheListOfPatterns) {
  EXPECT_EQ("Web Graphics(*.gif *.jpg)", NameFilter({"Web Graphics(*.gif;*.jpg)", "*.gif;*.jpg"}));
  EXPECT_EQ("Icon Files(*.ico)", NameFilter({"Icon Files", "*.ico"}));
  EXPECT_EQ("All files(*)", NameFilter({"All files(*.*)", "*.*"}));  // a name without a dot is a file too
}

}  // namespace
