#include <QJsonArray>
#include <QJsonObject>

#include "FontSizeMap.h"
#include "ForeignChanges.h"
#include "PageViewFixture.h"
#include "Settings.h"

namespace {

TEST(FontSizes, DigitsAndWordsGoBothWays) {
  const char* const words[] = {"xx-small", "x-small", "small", "medium", "large", "x-large"};
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(words[i], FontSizeMap(QString::number(i + 1)));
    EXPECT_EQ(QString::number(i + 1), FontSizeMap(words[i]));
  }
}

TEST(FontSizes, AnythingUnknownIsTwo) {
  for (const char* value : {"", "0", "7", "8", "xx-large", "12pt", "2px", "Small", " small", "1 ", "smaller", "-1"})
    EXPECT_EQ("2", FontSizeMap(value)) << value;
}

class PageValues : public PageViewTest {
 protected:
  void Open(const QString& attributes) {
    page_.Open(("<HTML><HEAD><TITLE>t</TITLE></HEAD><BODY" + attributes + ">x</BODY></HTML>").toUtf8(), false);
  }
  QString FontSize() { return page_.Document().body().style().fontSize(); }
};

TEST_F(PageValues, BeginWithTheSettings) {
  const WBUC::Values& values = view_.StoredValues();
  EXPECT_EQ("#000000", values.BodyFontColor);
  EXPECT_EQ("Arial, Helvetica", values.BodyFontName);
  EXPECT_EQ("3", values.BodyFontSize);
  EXPECT_EQ("#FFFFFF", values.BGColor);
  EXPECT_EQ("#0000FF", values.LinkColor);
  Settings::Save(page_.test.platform.settings, Settings::BCol, "#112233");
  Settings::Save(page_.test.platform.settings, Settings::BFace, "Tahoma");
  Settings::Save(page_.test.platform.settings, Settings::BSz, "5");
  HeadlessWebBrowser* browser = nullptr;
  WBUC second(page_.test.program, MakeHeadless(browser));
  EXPECT_EQ("#112233", second.StoredValues().BodyFontColor);
  EXPECT_EQ("Tahoma", second.StoredValues().BodyFontName);
  EXPECT_EQ("5", second.StoredValues().BodyFontSize);
  EXPECT_TRUE(browser->Offline());
}

TEST_F(PageValues, TheBlankPageHasNoDoctypeAndIsInQuirksMode) {
  page_.browser->Finish();
  ASSERT_TRUE(view_.DocReady());
  EXPECT_TRUE(page_.Document().tree().quirks());
  EXPECT_TRUE(view_.Source().startsWith("<html", Qt::CaseInsensitive));
  Open("");
  EXPECT_TRUE(page_.Document().tree().quirks());
}

TEST_F(PageValues, ANewPageIsStampedWithAllOfThem) {
  page_.Open("<HTML><BODY VLINK=\"#123456\">x</BODY></HTML>", true);
  EXPECT_EQ("#000000", Raw("text"));
  EXPECT_EQ("#0000FF", Raw("link"));
  EXPECT_EQ("#0000FF", Raw("vlink"));
  EXPECT_EQ("#FFFFFF", Raw("bgcolor"));
  EXPECT_EQ("small", FontSize());
  EXPECT_EQ("Arial, Helvetica", page_.Document().body().style().fontFamily());
}

// Meant in WBUC::StampValues: an empty font size is written as two pixels.
TEST_F(PageValues, StampingAnEmptySizeWritesTwoPixels) {
  view_.StoredValues().BodyFontSize = "";
  page_.Open("<HTML><BODY>x</BODY></HTML>", true);
  EXPECT_TRUE(Raw("style").contains("font-size: 2"));
  EXPECT_EQ("", view_.StoredValues().BodyFontSize);
}

TEST_F(PageValues, AnOpenedPageIsReadThroughTheWriters) {
  Open(" TEXT=black LINK=\"#ff0000\" VLINK=\"#800080\" STYLE=\"font-family: 'Tahoma'; font-size: Large\"");
  EXPECT_EQ("#000000", view_.BodyFontColor());
  EXPECT_EQ("#FF0000", view_.LinkColor());
  EXPECT_EQ("Tahoma", view_.BodyFontName());
  EXPECT_EQ("5", view_.BodyFontSize());
  // So opening changes the page.
  EXPECT_EQ("#000000", Raw("text"));
  EXPECT_EQ("#FF0000", Raw("link"));
  EXPECT_EQ("#FF0000", Raw("vlink"));
  EXPECT_EQ("large", FontSize());
}

// Meant in WBUC::ReadValues: the background colour of an opened page isn't read.
TEST_F(PageValues, BGColorIsNotReadBackFromAnOpenedPage) {
  view_.StoredValues().BGColor = "#ABCDEF";
  Open(" BGCOLOR=\"#112233\"");
  EXPECT_EQ("#ABCDEF", view_.BGColor());
  EXPECT_EQ("#112233", Raw("bgcolor"));
}

// Meant in WBUC::ReadValues: a page without a font size gets x-small when it is opened.
TEST_F(PageValues, APageWithoutFontSizeGetsXSmallAtOpening) {
  Open("");
  EXPECT_EQ("x-small", FontSize());
  EXPECT_EQ("2", view_.BodyFontSize());
}

TEST_F(PageValues, APageOfTwelvePointsGetsXSmallToo) {
  Open(" STYLE=\"font-size: 12pt\"");
  EXPECT_EQ("x-small", FontSize());
  EXPECT_EQ("2", view_.BodyFontSize());
}

// Meant in WBUC::SetLinkColor: the colour of visited links becomes that of links at each opening.
TEST_F(PageValues, VLinkIsOverwrittenWithLinkAtEachOpeningAndEachLinkColor) {
  Open(" LINK=\"#FF0000\" VLINK=\"#00FF00\"");
  EXPECT_EQ("#FF0000", Raw("vlink"));
  view_.SetLinkColor("#0000AA");
  EXPECT_EQ("#0000AA", Raw("link"));
  EXPECT_EQ("#0000AA", Raw("vlink"));
  Open(" VLINK=\"#00FF00\"");
  EXPECT_EQ("", Raw("vlink"));
  EXPECT_EQ("<absent>", Raw("link"));
}

TEST_F(PageValues, APageWithoutTextColourReadsAsEmpty) {
  Open("");
  EXPECT_EQ("", view_.BodyFontColor());
  EXPECT_EQ("<absent>", Raw("text"));
}

// Meant in WBUC::SetBodyFontSize: a font size of 7 stays in the field while the page gets 2.
TEST_F(PageValues, BodyFontSizeSevenStaysInTheFieldWhileThePageGetsTwo) {
  Open("");
  view_.SetBodyFontSize("7");
  EXPECT_EQ("7", view_.BodyFontSize());
  EXPECT_TRUE(Raw("style").contains("font-size: 2"));
  EXPECT_FALSE(Raw("style").contains("small"));
}

// Meant in WBUC::SetBodyFontColor: while no page is ready the text colour alone is stored, and nothing is made up for
// later.
TEST_F(PageValues, WhileNoDocumentIsReadyOnlyBodyFontColorIsStoredAndNothingIsQueued) {
  view_.Navo(page_.test.Path("none.html"), false);
  view_.SetBodyFontColor("#111111");
  view_.SetBodyFontName("Tahoma");
  view_.SetBodyFontSize("6");
  view_.SetLinkColor("#222222");
  view_.SetBGColor("#333333");
  view_.SetBackPic("late.gif");
  const WBUC::Values& values = view_.StoredValues();
  EXPECT_EQ("#111111", values.BodyFontColor);
  EXPECT_EQ("Arial, Helvetica", values.BodyFontName);
  EXPECT_EQ("3", values.BodyFontSize);
  EXPECT_EQ("#0000FF", values.LinkColor);
  EXPECT_EQ("#FFFFFF", values.BGColor);
  page_.Open("<HTML><HEAD></HEAD><BODY>x</BODY></HTML>", true);
  EXPECT_EQ("#111111", Raw("text"));
  EXPECT_EQ("#0000FF", Raw("link"));
  EXPECT_EQ("#FFFFFF", Raw("bgcolor"));
  EXPECT_EQ("small", FontSize());
  EXPECT_EQ("", view_.BackPic());
}

// Meant in WBUC::BodyFontColor: while no page is ready the page's values read as nothing.
TEST_F(PageValues, GettersWhileNotReadyGiveNothingButTheFieldsHoldTheirValues) {
  page_.browser->SetHtml("<HTML><HEAD><TITLE>t</TITLE></HEAD><BODY BACKGROUND='b.gif'>x</BODY></HTML>");
  ASSERT_EQ("b.gif", view_.BackPic());
  view_.Navo(page_.test.Path("none.html"), false);
  EXPECT_EQ(nullptr, view_.WBDocument());
  for (const QString& text :
       {view_.BackPic(), view_.BodyFontColor(), view_.BodyFontName(), view_.BodyFontSize(), view_.Source()})
    EXPECT_EQ("", text);
  EXPECT_TRUE(view_.SourceForFile().isEmpty());
  EXPECT_EQ("#FFFFFF", view_.BGColor());
  EXPECT_EQ("#0000FF", view_.LinkColor());
  EXPECT_EQ("3", view_.StoredValues().BodyFontSize);
  EXPECT_EQ(page_.test.Path("none.html"), view_.Location());
}

TEST_F(PageValues, ALoadThatFailsLeavesTheViewNotReadyAndSaysNothing) {
  page_.browser->Finish();
  ASSERT_TRUE(view_.DocReady());
  QSignalSpy complete(&view_, &WBUC::DocComplete);
  view_.Navo(page_.test.Path("none.html"), false);
  page_.browser->Finish();
  EXPECT_EQ(0, complete.size());
  EXPECT_FALSE(view_.DocReady());
  EXPECT_EQ("", view_.Source());
}

// Meant in WBUC::BodyFontColor: the page's values are those last set here, whatever a script of the page has changed.
TEST_F(PageValues, GettersGiveTheFieldsEvenWhenAPageScriptHasChangedTheDocument) {
  Open(" TEXT=\"#111111\" LINK=\"#222222\" STYLE=\"font-family: Tahoma; font-size: large\"");
  view_.SetBGColor("#333333");
  const int body = page_.Document().tree().bodyNode()->id();
  ApplyForeignChanges(page_.Document().gateway(),
                      {{"attributes", QJsonArray{QJsonArray{body, "text", "#999999", "link", "#999999", "bgcolor",
                                                            "#999999", "background", "new.gif", "style",
                                                            "font-size: x-large; font-family: Courier"}}}});
  ASSERT_EQ("#999999", Raw("text"));
  EXPECT_EQ("#111111", view_.BodyFontColor());
  EXPECT_EQ("#222222", view_.LinkColor());
  EXPECT_EQ("#333333", view_.BGColor());
  EXPECT_EQ("Tahoma", view_.BodyFontName());
  EXPECT_EQ("5", view_.BodyFontSize());
  // Background picture and title have no field and are asked of the document.
  EXPECT_EQ("new.gif", view_.BackPic());
}

TEST_F(PageValues, SourceIsTheLiveDocumentWithWhatScriptsWrote) {
  Open("");
  const Node* const text = TextOf(HTMLElement(page_.Document().tree().bodyNode()));
  ASSERT_TRUE(text);
  ApplyForeignChanges(page_.Document().gateway(),
                      {{"data", QJsonArray{QJsonArray{text->id(), "written by a script"}}}});
  EXPECT_TRUE(view_.Source().contains(">written by a script</body>"));
  EXPECT_TRUE(view_.SourceForFile().contains("written by a script"));
}

TEST_F(PageValues, TheBackgroundPictureComesAndGoes) {
  Open("");
  const QString before = view_.Source();
  view_.SetBackPic("");
  EXPECT_EQ(before, view_.Source());
  view_.SetBackPic("stars.jpg");
  EXPECT_EQ("stars.jpg", Raw("background"));
  EXPECT_EQ("stars.jpg", view_.BackPic());
  view_.SetBackPic("");
  EXPECT_EQ("<absent>", Raw("background"));
}

TEST_F(PageValues, TheTitleGoesStraightThrough) {
  Open("");
  EXPECT_EQ("t", view_.Title());
  view_.SetTitle("new");
  EXPECT_EQ("new", view_.Title());
  EXPECT_TRUE(view_.Source().contains("<title>new</title>"));
}

TEST_F(PageValues, WhileAPageLoadsTheTitleIsStillThatOfTheOneBefore) {
  Open("");
  view_.Navo(page_.test.Path("none.html"), false);
  EXPECT_EQ("t", view_.Title());
  view_.SetTitle("late");
  EXPECT_EQ("late", view_.Title());
  page_.browser->Finish();
  EXPECT_EQ("", view_.Title());  // there is no document at all
  view_.SetTitle("later");
  page_.Open("<HTML><HEAD></HEAD><BODY>x</BODY></HTML>", true);
  EXPECT_EQ("", view_.Title());
}

TEST_F(PageValues, DocCompleteComesOnceForEachPage) {
  QSignalSpy complete(&view_, &WBUC::DocComplete);
  Open("");
  Open("");
  EXPECT_EQ(2, complete.size());
}

// Tells how it was switched, also when it has gone.
class SwitchedBrowser : public HeadlessWebBrowser {
 public:
  explicit SwitchedBrowser(QList<bool>& switched) : switched_(switched) {}
  void SetOffline(bool offline) override {
    switched_.append(offline);
    HeadlessWebBrowser::SetOffline(offline);
  }

 private:
  QList<bool>& switched_;
};

TEST(PageView, SwitchesTheComponentOffTheNetAndOnAgainWhenItGoes) {
  TestProgram test;
  QList<bool> switched;
  {
    const WBUC view(test.program, [&](QWidget*) { return std::make_unique<SwitchedBrowser>(switched); });
    EXPECT_EQ(QList<bool>{true}, switched);
  }
  EXPECT_EQ(QList<bool>({true, false}), switched);
}

}  // namespace
