// The window of the quick tips: its texts, what it keeps, and how it looks.
#include <gtest/gtest.h>

#include <QCloseEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include "FTip.h"
#include "FWebTables.h"
#include "FitsAtEveryFontSize.h"
#include "RunningProgram.h"
#include "StringTable.h"
#include "TipText.h"

namespace {

class TipWindow : public ::testing::Test {
 protected:
  QString Shown() const { return tip_.TTip->toPlainText(); }
  FTip tip_;
};

// Meant in kAnswers: the first tip shows its second text first.
TEST_F(TipWindow, QuestionZeroShowsText170Before169) {
  tip_.ShowTip(0, "What can I do with Corvane?");
  EXPECT_EQ("  " + StringText(170) + "\n\n  " + StringText(169), Shown());
  EXPECT_LT(Shown().indexOf("CVN makes it simple"), Shown().indexOf("(See next topic.)"));
}

TEST_F(TipWindow, Text170KeepsItsBlankAtTheEnd) {
  EXPECT_TRUE(StringText(170).endsWith("simple. "));
  EXPECT_TRUE(TipText(0).contains("CVN makes it simple. \r\n\r\n"));
  tip_.ShowTip(0, "q");
  EXPECT_TRUE(Shown().startsWith("  Corvane makes webpages. You don't need any experience. CVN makes it simple. \n"));
}

TEST_F(TipWindow, EachParagraphStartsWithTwoBlanks) {
  for (int index = 0; index < 12; ++index) {
    tip_.ShowTip(index, "q");
    for (const QString& paragraph : Shown().split("\n\n")) {
      EXPECT_TRUE(paragraph.startsWith("  ")) << index;
      EXPECT_NE(u' ', paragraph.at(2)) << index;
    }
  }
}

TEST_F(TipWindow, AnswersHaveTheirTextsInTheOrderOfTheMenu) {
  const QList<QList<int>> numbers = {{170, 169}, {171, 172, 173}, {174}, {175}, {176}, {177},
                                     {178},      {179},           {180}, {181}, {182}, {183}};
  for (int index = 0; index < numbers.size(); ++index) {
    QStringList paragraphs;
    for (const int number : numbers[index]) {
      ASSERT_FALSE(StringText(number).isEmpty()) << number;
      paragraphs += "  " + StringText(number);
    }
    EXPECT_EQ(paragraphs.join("\r\n\r\n"), TipText(index)) << index;
  }
}

// Meant in FTip::ShowTip: an unknown question changes nothing.
TEST_F(TipWindow, AnUnknownQuestionChangesNothing) {
  for (const int index : {-1, 12, 32767}) {
    EXPECT_EQ("", TipText(index));
    tip_.ShowTip(index, "What?");
    EXPECT_FALSE(tip_.isVisible());
    EXPECT_EQ("", tip_.LabTitle->text());
  }
  tip_.ShowTip(3, "What is the Work Window?");
  tip_.ShowTip(12, "What?");
  EXPECT_EQ("What is the Work Window?", tip_.LabTitle->text());
  EXPECT_EQ("  " + StringText(175), Shown());
}

TEST_F(TipWindow, ASecondQuestionTakesThePlaceOfTheFirst) {
  tip_.ShowTip(1, "What can I do with webpages?");
  tip_.TTip->verticalScrollBar()->setValue(tip_.TTip->verticalScrollBar()->maximum());
  tip_.ShowTip(4, "What are Themes?");
  EXPECT_TRUE(tip_.isVisible());
  EXPECT_FALSE(tip_.isModal());
  EXPECT_EQ("What are Themes?", tip_.LabTitle->text());
  EXPECT_EQ("  " + StringText(176), Shown());
  EXPECT_EQ(0, tip_.TTip->verticalScrollBar()->value());
}

TEST_F(TipWindow, ItKeepsItsTextWhileItIsHidden) {
  tip_.ShowTip(8, "What is a table?");
  QTest::mouseClick(tip_.bClose, Qt::LeftButton);
  EXPECT_FALSE(tip_.isVisible());
  EXPECT_EQ("What is a table?", tip_.LabTitle->text());
  EXPECT_EQ("  " + StringText(180), Shown());
  tip_.show();
  EXPECT_EQ("  " + StringText(180), Shown());
}

TEST_F(TipWindow, ClosingOnlyHides) {
  tip_.ShowTip(2, "How do I start?");
  QCloseEvent close;
  QApplication::sendEvent(&tip_, &close);
  EXPECT_FALSE(close.isAccepted());
  EXPECT_FALSE(tip_.isVisible());
  tip_.show();
  QTest::keyClick(tip_.TTip, Qt::Key_Escape);
  EXPECT_FALSE(tip_.isVisible());
  EXPECT_FALSE(tip_.TTip->toPlainText().isEmpty());
}

TEST_F(TipWindow, EachTimeItComesUpTheButtonHasTheKeys) {
  for (const int index : {2, 3}) {
    tip_.ShowTip(index, "q");
    EXPECT_EQ(tip_.bClose, tip_.focusWidget());
    tip_.TTip->setFocus();
    ASSERT_EQ(tip_.TTip, tip_.focusWidget());
    if (index == 2) tip_.hide();
  }
}

TEST_F(TipWindow, ItsControls) {
  EXPECT_EQ("Corvane - Quick Tips", tip_.windowTitle());
  EXPECT_EQ("OK", tip_.bClose->text());
  EXPECT_TRUE(tip_.LabTitle->font().bold());
  EXPECT_TRUE(tip_.TTip->isReadOnly());
  EXPECT_EQ(QPlainTextEdit::WidgetWidth, tip_.TTip->lineWrapMode());
  EXPECT_EQ("Verdana", tip_.TTip->font().families().first());
  EXPECT_EQ(QColor(0x00, 0x00, 0x80), tip_.TTip->palette().color(QPalette::Text));
  EXPECT_EQ(QColor(0xff, 0xff, 0xec), tip_.TTip->palette().color(QPalette::Base));
  tip_.ShowTip(2, "How do I start?");
  EXPECT_TRUE(tip_.TTip->verticalScrollBar()->isVisible());
  EXPECT_EQ("Verdana", tip_.TTip->document()->defaultFont().families().first());
}

TEST_F(TipWindow, NothingIsCutOffFrom8To14Points) {
  ExpectFitsAtEveryFontSize([] {
    auto tip = std::make_unique<FTip>();
    tip->ShowTip(9, "How do I control the page layout?");
    EXPECT_EQ(0, tip->TTip->horizontalScrollBar()->maximum());
    return tip;
  });
}

TEST(TipMenu, EachEntryShowsItsAnswerUnderItsOwnCaption) {
  RunningProgram run;
  ASSERT_TRUE(run.Start());
  FTip& tip = *run.modMain.Tip();
  EXPECT_FALSE(tip.isVisible());
  int index = 0;
  for (const MenuRow& row : MenuRows()) {
    if (!QString(row.name).startsWith("mQuik") || row.depth != 1) continue;
    ASSERT_TRUE(run.Choose(row.name));
    EXPECT_TRUE(tip.isVisible());
    EXPECT_EQ(row.caption, tip.LabTitle->text());
    EXPECT_EQ(TipText(index).replace("\r\n", "\n"), tip.TTip->toPlainText());
    ++index;
  }
  EXPECT_EQ(12, index);
}

}  // namespace
