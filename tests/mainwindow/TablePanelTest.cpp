#include <QTest>

#include "OwnTime.h"
#include "ToolsFixture.h"

namespace {

class TablePanel : public ToolsTest {
 protected:
  void NewTable(const QString& width, const QString& height) {
    Tools().ShowTool(ToolTask::NewTable, QString());
    Tools().TTable[0]->setText(width);
    Tools().TTable[1]->setText(height);
  }
  void Ok() { Tools().bOKTable[0]->click(); }
  // Shows a table with these attributes and opens the panel on it, as the current element where told.
  void Load(const QString& attributes, const QString& rows = "<tr><td>x</td></tr>") {
    ShowBody("<table id='t' " + attributes + ">" + rows + "</table>");
    View().SetCurrentElement(Element("t"));
    Tools().LoadTableProps(Element("t"));
  }
  QString Attribute(const char* name) { return Element("t").getAttribute(name); }
};

TEST_F(TablePanel, StartsWithItsDesignValues) {
  EXPECT_EQ(0xe0e0e0, Tools().BoxColor[3]->Color());
  EXPECT_FALSE(Tools().CkBorder->isChecked());
  EXPECT_EQ("Table has border.", Tools().CkBorder->text());
  EXPECT_EQ(QString("1 2 3 4 5 6 7 8 9 10 11 12").split(' '), Items(*Tools().BoxBorder));
  EXPECT_EQ("1", Tools().BoxBorder->currentText());
  EXPECT_EQ(QString("0 5 10 15 20 25 30 35 40").split(' '), Items(*Tools().BoxPadding));
  EXPECT_EQ("0", Tools().BoxPadding->currentText());
  EXPECT_EQ("Left", On(Tools().OpH));
  EXPECT_EQ("Left", On(Tools().OpHTD));
  EXPECT_EQ("Top", On(Tools().OpVTD));
  EXPECT_EQ("Create a new table (rectangular frame area) in page. Tables can contain text and/or pictures.",
            Tools().LabNewTable->text());
}

TEST_F(TablePanel, TheLabelTellsTheMode) {
  Tools().ShowTool(ToolTask::NewTable, QString());
  EXPECT_TRUE(Tools().LabNewTable->isVisible());
  Tools().ShowTool(ToolTask::TableProperties, QString());
  EXPECT_FALSE(Tools().LabNewTable->isVisible());
}

TEST_F(TablePanel, ANewTableGetsTheCaptionsOfTheOptionsAsTheyStand) {
  ShowBody(QString());
  NewTable("300", "100");
  Tools().OpH[1]->click();
  Tools().OpHTD[2]->click();
  Tools().OpVTD[1]->click();
  Tools().CkBorder->click();
  Tools().BoxBorder->setCurrentIndex(3);
  Tools().BoxPadding->setCurrentIndex(2);
  Tools().BoxColor[3]->SetColor(0x030201);
  Ok();
  EXPECT_TRUE(
      Body().startsWith("<table align=\"Center\" width=\"300\" height=\"100\" border=\"4\" bgcolor=\"#010203\" "
                        "cellpadding=\"10\"><tbody><tr><td align=\"Right\" valign=\"Center\"><font"))
      << qPrintable(Body());
  EXPECT_FALSE(Tools().isVisible());
}

TEST_F(TablePanel, WithoutTheCheckMarkTheBorderIsNone) {
  ShowBody(QString());
  NewTable("1", "2");
  Tools().BoxBorder->setCurrentIndex(7);
  Ok();
  EXPECT_TRUE(Body().contains(" border=\"0\" bgcolor=\"#E0E0E0\" cellpadding=\"0\"")) << qPrintable(Body());
  EXPECT_TRUE(Body().startsWith("<table align=\"Left\" "));
  EXPECT_TRUE(Body().contains("<td align=\"Left\" valign=\"Top\">"));
}

TEST_F(TablePanel, AnEmptyPaddingIsNone) {
  ShowBody(QString());
  NewTable("1", "2");
  Tools().BoxPadding->setCurrentIndex(-1);
  Ok();
  EXPECT_TRUE(Body().contains(" cellpadding=\"0\"")) << qPrintable(Body());
}

TEST_F(TablePanel, ASizeInPercentIsRefusedAndThePanelStays) {
  ShowBody(QString());
  const std::pair<const char*, const char*> rows[] = {{"50%", "10"}, {"10", "50%"}, {"", "10"}, {"10", ""}, {"a", "b"}};
  for (const auto& [width, height] : rows) {
    NewTable(width, height);
    Dialogs().Boxes.clear();
    Ok();
    ASSERT_EQ(1, Dialogs().Boxes.size()) << width << " " << height;
    const ScriptedDialogs::Box& box = Dialogs().Boxes[0];
    EXPECT_EQ("Table width and height must be entered as number of pixels.", box.text);
    EXPECT_EQ(MessageIcon::Information, box.icon);
    EXPECT_EQ(MessageButtons::Ok, box.buttons);
    EXPECT_EQ(&Tools(), box.owner);
    EXPECT_TRUE(Tools().isVisible());
    EXPECT_EQ(width, Tools().TTable[0]->text());
    EXPECT_FALSE(Tools().Busy);
  }
  EXPECT_EQ("", Body());
}

// Meant in FTools::OnOKTable: a size with an exponent counts as a number and is written as it was typed.
TEST_F(TablePanel, ASizeWithAnExponentPassesAsItIs) {
  ShowBody(QString());
  NewTable("1e2", "-1.5");
  Ok();
  EXPECT_TRUE(Body().contains(" width=\"1e2\" height=\"-1.5\"")) << qPrintable(Body());
  EXPECT_TRUE(Dialogs().Boxes.isEmpty());
}

TEST_F(TablePanel, OkAndCancelHideItWithoutLeavingTheTopLayer) {
  NewTable("1", "2");
  Ok();
  EXPECT_FALSE(Tools().isVisible());
  EXPECT_TRUE(IsOnTop());
  ShowBody(QString());
  NewTable("x", "y");
  Tools().bOKTable[1]->click();
  EXPECT_FALSE(Tools().isVisible());
  EXPECT_TRUE(IsOnTop());
  EXPECT_EQ("", Body());
  EXPECT_TRUE(Dialogs().Boxes.isEmpty());
}

TEST_F(TablePanel, ReturnOnCancelAddsNothing) {
  ShowBody("text");
  Tools().ShowTool(ToolTask::NewTable, QString());
  ASSERT_TRUE(Tools().isVisible());
  Tools().bOKTable[1]->setFocus();
  QTest::keyClick(Tools().bOKTable[1], Qt::Key_Return);
  EXPECT_FALSE(Tools().isVisible());
  EXPECT_EQ(Body(), QString("text"));
}

TEST_F(TablePanel, TheCellsOfALargeTableAreChangedInAWalk) {
  Load("width='300' height='80'", QString("<tr><td>x</td></tr>").repeated(20000));
  const OwnTime taken;
  Ok();
  EXPECT_LT(taken.Seconds(), 5);  // by its position in the document each cell took a walk of its own, half a minute
  EXPECT_EQ(Body().count("<td"), 20000);
  EXPECT_EQ(Body().count("valign", Qt::CaseInsensitive), 20000);
}

TEST_F(TablePanel, ShowsTheValuesOfATable) {
  Load("width='50%' height=20 border=3 bgcolor='#010203' cellpadding=10 align=CENTER",
       "<tr><td align=right valign=bottom>x</td><td align=left>y</td></tr>");
  EXPECT_EQ("Tables", Tools().windowTitle());
  EXPECT_EQ("  Edit table properties  ", Tools().FrTool[3]->Caption());
  EXPECT_EQ("50%", Tools().TTable[0]->text());
  EXPECT_EQ("20", Tools().TTable[1]->text());
  EXPECT_TRUE(Tools().CkBorder->isChecked());
  EXPECT_EQ("3", Tools().BoxBorder->currentText());
  EXPECT_EQ(0x030201, Tools().BoxColor[3]->Color());
  EXPECT_EQ("10", Tools().BoxPadding->currentText());
  EXPECT_EQ("Center", On(Tools().OpH));
  EXPECT_EQ("Right", On(Tools().OpHTD));
  EXPECT_EQ("Bottom", On(Tools().OpVTD));
}

// Meant in FTools::LoadTableProps: options stay where the last table left them when this one says nothing that they
// know.
TEST_F(TablePanel, OptionsStayWhereTheTableSaysNothingTheyKnow) {
  Load("align=right", "<tr><td align=right valign=bottom>x</td></tr>");
  Load("align=middle", "<tr><td valign=middle>x</td></tr>");
  EXPECT_EQ("Right", On(Tools().OpH));
  EXPECT_EQ("Right", On(Tools().OpHTD));
  EXPECT_EQ("Bottom", On(Tools().OpVTD));
  Load("", "");
  EXPECT_EQ("Right", On(Tools().OpH));
}

TEST_F(TablePanel, ABorderThatIsNoNumberLeavesCheckMarkAndListAsTheLastTableLeftThem) {
  Load("border=4");
  for (const char* attributes : {"", "border=''", "border='thin'"}) {
    Load(attributes);
    EXPECT_TRUE(Tools().CkBorder->isChecked()) << attributes;
    EXPECT_EQ("4", Tools().BoxBorder->currentText()) << attributes;
  }
  Load("border=0");
  EXPECT_FALSE(Tools().CkBorder->isChecked());
  EXPECT_EQ("4", Tools().BoxBorder->currentText());
  Load("");
  EXPECT_FALSE(Tools().CkBorder->isChecked());
}

TEST_F(TablePanel, ABorderBeyondTheListIsCheckedButNotSelected) {
  Load("border=2");
  for (const char* border : {"20", "13", "-5", "99999999999", "-2147483648", "00"}) {
    Tools().CkBorder->setChecked(false);
    Load(QString("border=%1").arg(border));
    EXPECT_TRUE(Tools().CkBorder->isChecked()) << border;
    EXPECT_EQ("2", Tools().BoxBorder->currentText()) << border;
  }
}

// Meant in FTools::LoadTableProps: a padding between two steps shows as the lower one, and OK writes that.
TEST_F(TablePanel, APaddingBetweenTwoStepsShowsTheLowerAndOkWritesIt) {
  Load("width=10 height=10 cellpadding=7");
  EXPECT_EQ("5", Tools().BoxPadding->currentText());
  Ok();
  EXPECT_EQ("5", Attribute("cellpadding"));
}

TEST_F(TablePanel, APaddingThatIsNoneOrNoNumberShowsNone) {
  for (const char* attributes : {"", "cellpadding=0", "cellpadding=x", "cellpadding=''", "cellpadding=4"}) {
    Load("cellpadding=20");
    ASSERT_EQ("20", Tools().BoxPadding->currentText());
    Load(attributes);
    EXPECT_EQ("0", Tools().BoxPadding->currentText()) << attributes;
  }
}

TEST_F(TablePanel, APaddingBeyondTheListLeavesTheListWhereItIs) {
  for (const char* attributes : {"cellpadding=45", "cellpadding=99999999999", "cellpadding=-5"}) {
    Load("cellpadding=20");
    Load(attributes);
    EXPECT_EQ("20", Tools().BoxPadding->currentText()) << attributes;
  }
}

// Meant in FTools::ApplyToTable: an edit of a table sets the cells of the tables inside of it too.
TEST_F(TablePanel, AnEditSetsTheTableAndAllCellsInItThoseOfTablesInsideToo) {
  Load("width=10 height=10",
       "<tr><td id='one'>x<table id='inner'><tr><td id='two'>y</td></tr></table></td><th id='head'>z</th></tr>");
  Tools().TTable[0]->setText("1e2");
  Tools().CkBorder->setChecked(true);
  Tools().BoxBorder->setCurrentIndex(1);
  Tools().BoxColor[3]->SetColor(0x030201);
  Tools().OpH[2]->click();
  Tools().OpHTD[1]->click();
  Tools().OpVTD[1]->click();
  Ok();
  EXPECT_EQ("1e2", Attribute("width"));
  EXPECT_EQ("10", Attribute("height"));
  EXPECT_EQ("2", Attribute("border"));
  EXPECT_EQ("#010203", Attribute("bgColor"));
  EXPECT_EQ("Right", Attribute("align"));
  EXPECT_EQ("0", Attribute("cellpadding"));
  for (const char* id : {"one", "two"}) {
    EXPECT_EQ("Center", Element(id).getAttribute("align")) << id;
    EXPECT_EQ("Center", Element(id).getAttribute("vAlign")) << id;
  }
  EXPECT_EQ("", Element("inner").getAttribute("width"));
  EXPECT_EQ("", Element("head").getAttribute("align"));
  EXPECT_FALSE(Tools().isVisible());
}

// Meant in FTools::LoadTableProps: opened from a cell the panel shows the table, but OK changes nothing.
TEST_F(TablePanel, OpenedFromACellItShowsTheTableButOkChangesNothing) {
  for (const char* current : {"c", "r"}) {
    ShowBody("<table id='t' width=77 height=10><tr id='r'><td id='c'>x</td></tr></table>");
    View().SetCurrentElement(Element(current));
    Tools().LoadTableProps(Element("t"));
    EXPECT_EQ(Element(current), View().CurrentElement());
    EXPECT_EQ("77", Tools().TTable[0]->text());
    Tools().TTable[0]->setText("99");
    const QString before = Body();
    Ok();
    EXPECT_EQ(before, Body()) << current;
    EXPECT_FALSE(Tools().isVisible());
  }
}

TEST_F(TablePanel, WithNothingCurrentAnEditChangesNothing) {
  ShowBody("<table id='t' width=77 height=10><tr><td>x</td></tr></table>");
  Tools().LoadTableProps(Element("t"));
  const QString before = Body();
  Ok();
  EXPECT_EQ(before, Body());
}

TEST_F(TablePanel, ItsSwatchTouchesNothingButItself) {
  Tools().ShowTool(ToolTask::NewTable, QString());
  const QString before = View().Source();
  Dialogs().Colors = {0x010203};
  Tools().BoxColor[3]->click();
  EXPECT_EQ(0xe0e0e0, Dialogs().ColorQuestions[0].start);
  EXPECT_EQ(0x010203, Tools().BoxColor[3]->Color());
  EXPECT_EQ(before, View().Source());
}

// What a number is replaced by takes its place, however the keys came to the box.
TEST_F(TablePanel, ANumberThatGetsTheKeysIsSelected) {
  Tools().ShowTool(ToolTask::NewTable, QString());
  ASSERT_TRUE(QTest::qWaitForWindowActive(&Tools()));
  Tools().TTable[0]->setText("400");
  Tools().TTable[1]->setText("200");
  Tools().TTable[1]->setFocus();
  Tools().hide();
  Tools().ShowTool(ToolTask::NewTable, QString());
  ASSERT_TRUE(QTest::qWaitForWindowActive(&Tools()));
  QTest::keyClicks(Tools().TTable[0], "300");
  EXPECT_EQ("300", Tools().TTable[0]->text());
  const QPoint left(4, Tools().TTable[1]->height() / 2);
  // Without a window manager nobody else tells Qt that the window is active again.
  QT_WARNING_PUSH
  QT_WARNING_DISABLE_DEPRECATED
  QApplication::setActiveWindow(&Tools());
  QT_WARNING_POP
  QTest::mouseClick(Tools().TTable[1], Qt::LeftButton, {}, left);
  EXPECT_EQ("200", Tools().TTable[1]->selectedText());
  QTest::mouseClick(Tools().TTable[1], Qt::LeftButton, {}, left, QApplication::doubleClickInterval() + 1);
  EXPECT_EQ("", Tools().TTable[1]->selectedText()) << "a second click places";
}

}  // namespace
