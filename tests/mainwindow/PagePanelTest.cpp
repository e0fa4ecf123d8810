#include "ToolsFixture.h"

namespace {

class PagePanel : public ToolsTest {};

TEST_F(PagePanel, OpensWithThePagesValues) {
  run_.browser->SetHtml("<HTML><HEAD><TITLE>My page</TITLE></HEAD><BODY>x</BODY></HTML>");
  View().SetLinkColor("#010203");
  View().SetBodyFontColor("#0A0B0C");
  View().SetBGColor("#112233");
  View().SetBodyFontSize("5");
  Style().setTextAlign("Right");
  Tools().OpenPageProps();
  EXPECT_EQ("Page Properties", Tools().windowTitle());
  EXPECT_EQ("My page", Tools().TTitle->text());
  EXPECT_EQ(0x030201, Tools().BoxColor[0]->Color());
  EXPECT_EQ(0x332211, Tools().BoxColor[1]->Color());
  EXPECT_EQ(0x0c0b0a, Tools().BoxColor[2]->Color());
  EXPECT_EQ(4, Tools().BoxSize->currentIndex());
  EXPECT_EQ("Right", On(Tools().OpBod));
}

TEST_F(PagePanel, TheAlignmentIsLeftUnlessThePageSaysOtherwise) {
  for (const auto& [align, option] :
       {std::pair("center", "Center"), {"", "Left"}, {"RIGHT", "Right"}, {"justify", "Left"}, {"CENTER", "Center"}}) {
    Style().setTextAlign(align);
    Tools().OpenPageProps();
    EXPECT_EQ(option, On(Tools().OpBod)) << align;
  }
}

// Meant in FTools::OpenPageProps: opening the panel leaves the list of faces as it is, whatever face the page has.
TEST_F(PagePanel, OpeningNeverSetsTheFace) {
  EXPECT_EQ(0, Tools().BoxFace->currentIndex());  // from the settings
  View().SetBodyFontName("Tahoma");
  Tools().OpenPageProps();
  EXPECT_EQ(0, Tools().BoxFace->currentIndex());
  Tools().BoxFace->setCurrentIndex(2);
  Tools().OpenPageProps();
  EXPECT_EQ(2, Tools().BoxFace->currentIndex());
  EXPECT_EQ("Tahoma", View().BodyFontName());
}

// Meant in FTools::OpenPageProps: the panel shows the background colour that was last given, not the page's.
TEST_F(PagePanel, TheBackgroundShownIsTheOneLastGivenNotThatOfThePage) {
  const QString path = run_.test.Path("own.html");
  ASSERT_TRUE(PutFile(path, "<HTML><BODY BGCOLOR=\"#00FF00\">x</BODY></HTML>"));
  View().Navo(path, false);
  run_.Settle();
  ASSERT_EQ("#00FF00", Raw("bgcolor"));
  Tools().OpenPageProps();
  EXPECT_EQ(0xffffff, Tools().BoxColor[1]->Color());
}

TEST_F(PagePanel, OpeningChangesNothingInThePage) {
  ShowBody("<font>one</font>");
  View().SetBodyFontSize("4");
  Style().setTextAlign("center");
  const QString before = View().Source();
  Tools().OpenPageProps();
  Tools().OpenPageProps();
  EXPECT_EQ(before, View().Source());
}

TEST_F(PagePanel, ASizeThatTheListHasNotLeavesItWhereItIs) {
  for (const char* size : {"7", "0", "", "x"}) {
    View().SetBodyFontSize("2");
    Tools().OpenPageProps();
    View().SetBodyFontSize(size);
    Tools().OpenPageProps();
    EXPECT_EQ(1, Tools().BoxSize->currentIndex()) << size;
  }
}

TEST_F(PagePanel, TheTitleIsTakenOnItsOwnOk) {
  Tools().OpenPageProps();
  Tools().TTitle->setText(" A & B ");
  EXPECT_NE(" A & B ", View().Title());
  Tools().bTitle->click();
  EXPECT_EQ(" A & B ", View().Title());
  EXPECT_TRUE(Tools().isVisible());
}

TEST_F(PagePanel, EachSwatchAsksForAColorAndGivesItToThePage) {
  Tools().OpenPageProps();
  struct Row {
    int index;
    const char* attribute;
    const char* value;
  };
  const Row rows[] = {{0, "link", "#030201"}, {1, "bgcolor", "#040201"}, {2, "text", "#050201"}};
  for (const auto& [index, attribute, value] : rows) {
    Swatch& swatch = *Tools().BoxColor[std::size_t(index)];
    const qint32 before = swatch.Color();
    Dialogs().Colors = {0x010203 + index};
    swatch.click();
    EXPECT_EQ(before, Dialogs().ColorQuestions.last().start);
    EXPECT_EQ(&Tools(), Dialogs().ColorQuestions.last().owner);
    EXPECT_EQ(0x010203 + index, swatch.Color());
    EXPECT_EQ(value, Raw(attribute)) << attribute;
  }
  EXPECT_EQ("#030201", View().LinkColor());
  EXPECT_EQ("#030201", Raw("vlink"));
  EXPECT_EQ("#040201", View().BGColor());
  EXPECT_EQ("#050201", View().BodyFontColor());
}

TEST_F(PagePanel, CancelLeavesTheColorAndBlackIsAColor) {
  View().SetBodyFontColor("#AA0000");
  Tools().OpenPageProps();
  Dialogs().Colors = {std::nullopt, -1};
  Tools().BoxColor[2]->click();
  Tools().BoxColor[2]->click();
  EXPECT_EQ(0x0000aa, Tools().BoxColor[2]->Color());
  EXPECT_EQ("#AA0000", View().BodyFontColor());
  Dialogs().Colors = {0};
  Tools().BoxColor[2]->click();
  EXPECT_EQ(0, Tools().BoxColor[2]->Color());
  EXPECT_EQ("#000000", View().BodyFontColor());
}

TEST_F(PagePanel, ColorsStoredInTheDialogAreTheProgramsAlsoAfterCancel) {
  run_.program().CustColors[3] = 0x123456;
  Dialogs().StoreColors = [](CustomColors& colors) { colors[15] = 0x654321; };
  Dialogs().Colors = {std::nullopt};
  Tools().BoxColor[0]->click();
  EXPECT_EQ(0x123456, Dialogs().ColorQuestions[0].custom[3]);
  EXPECT_EQ(0x654321, run_.program().CustColors[15]);
}

TEST_F(PagePanel, AFaceIsTakenAtOnceAlsoTheOneChosenAlready) {
  EXPECT_EQ(QStringList({"Arial, Helvetica", "Verdana, Arial, Helvetica", "Times New Roman", "Comic Sans MS",
                         "Courier New", "Tahoma"}),
            Items(*Tools().BoxFace));
  Tools().OpenPageProps();
  Pick(*Tools().BoxFace, 5);
  EXPECT_EQ("Tahoma", View().BodyFontName());
  EXPECT_EQ("Tahoma", Style().fontFamily());
  View().SetBodyFontName("Courier New");
  Pick(*Tools().BoxFace, 5);
  EXPECT_EQ("Tahoma", View().BodyFontName());
}

TEST_F(PagePanel, AnEmptyFaceIsReplaced) {
  View().SetBodyFontName("Tahoma");
  Tools().BoxFace->addItem("   ");
  Tools().OpenPageProps();
  Pick(*Tools().BoxFace, 6);
  EXPECT_EQ("Arial, Helvetica", View().BodyFontName());
}

TEST_F(PagePanel, ASizeIsTakenAtOnce) {
  EXPECT_EQ(QStringList({"1", "2", "3", "4", "5", "6"}), Items(*Tools().BoxSize));
  Tools().OpenPageProps();
  Pick(*Tools().BoxSize, 5);
  EXPECT_EQ("6", View().BodyFontSize());
  Pick(*Tools().BoxSize, 0);
  EXPECT_EQ("1", View().BodyFontSize());
}

TEST_F(PagePanel, AnAlignmentIsTakenAtOnce) {
  Tools().OpenPageProps();
  for (const auto& [index, align] : {std::pair(1, "center"), {2, "right"}, {0, "left"}}) {
    Tools().OpBod[std::size_t(index)]->click();
    EXPECT_EQ(align, Style().textAlign().toLower());
  }
}

TEST_F(PagePanel, ABackgroundPictureIsCopiedAndNamedWithoutAFolder) {
  Viewer().show();
  Dialogs().Texts = {Picture("a b.jpeg", "bytes")};
  Tools().OpenPageProps();
  Tools().bBackPic[0]->click();
  const ScriptedDialogs::Question& question = Dialogs().Questions.last();
  EXPECT_EQ("Select Picture", question.title);
  EXPECT_EQ(QList<FileFilter>({{"Web Graphics(*.gif;*.jpg;*.png)", "*.gif;*.jpg;*.png"}}), question.filters);
  EXPECT_EQ(&Tools(), question.owner);
  EXPECT_EQ("a_b.jpeg", View().BackPic());
  EXPECT_EQ("bytes", WorkFile("a_b.jpeg"));
  EXPECT_FALSE(Viewer().isVisible());
  EXPECT_TRUE(Tools().isVisible());
  Tools().bBackPic[1]->click();
  EXPECT_EQ("<absent>", Raw("background"));
}

TEST_F(PagePanel, TheViewerIsHiddenAlsoForAMissingPictureButNotOnCancel) {
  Viewer().show();
  Dialogs().Texts = {QString()};
  Tools().bBackPic[0]->click();
  EXPECT_TRUE(Viewer().isVisible());
  Dialogs().Texts = {run_.test.Path("none.gif")};
  Tools().bBackPic[0]->click();
  EXPECT_FALSE(Viewer().isVisible());
  EXPECT_EQ("<absent>", Raw("background"));
}

// Meant in FTools::OnBackPic: a background picture chosen out of the project's own folder is deleted.
TEST_F(PagePanel, ABackgroundOutOfTheProjectsOwnFolderIsDeleted) {
  ASSERT_TRUE(PutFile(run_.test.WorkFile("back.gif"), "x"));
  Dialogs().Texts = {run_.test.WorkFile("back.gif")};
  Tools().bBackPic[0]->click();
  EXPECT_EQ("<missing>", WorkFile("back.gif"));
  EXPECT_EQ("back.gif", View().BackPic());
}

TEST_F(PagePanel, OkOnlyCloses) {
  Tools().OpenPageProps();
  Tools().TTitle->setText("not taken");
  Tools().bOKProps->click();
  EXPECT_FALSE(Tools().isVisible());
  EXPECT_FALSE(IsOnTop());
  EXPECT_NE("not taken", View().Title());
}

TEST_F(PagePanel, WhileADialogIsUpTheGuardedButtonsDoNothing) {
  Tools().OpenPageProps();
  View().SetBackPic("keep.gif");
  bool wasBusy = false;
  Dialogs().WhileShown = [&] {
    wasBusy = Tools().Busy;
    Tools().BoxColor[3]->click();
    Tools().bBackPic[0]->click();
    Tools().bBackPic[1]->click();
    Tools().bOKTable[1]->click();
    Tools().bOKPic[1]->click();
    // These two aren't guarded.
    Tools().TTitle->setText("taken");
    Tools().bTitle->click();
    Pick(*Tools().BoxSize, 4);
  };
  Dialogs().Colors = {0x010203};
  Tools().BoxColor[0]->click();
  EXPECT_TRUE(wasBusy);
  EXPECT_FALSE(Tools().Busy);
  EXPECT_EQ(1, Dialogs().ColorQuestions.size());
  EXPECT_TRUE(Dialogs().Questions.isEmpty());
  EXPECT_EQ("keep.gif", View().BackPic());
  EXPECT_TRUE(Tools().isVisible());
  EXPECT_EQ("taken", View().Title());
  EXPECT_EQ("5", View().BodyFontSize());
}

}  // namespace
