// Undo and redo of the user's commands.
#include <QClipboard>
#include <QGuiApplication>

#include "ForeignChanges.h"
#include "PageViewFixture.h"
#include "WorkOps.h"

#include <QJsonArray>

namespace {

class UndoTest : public PageViewTest {
 protected:
  UndoTest() {
    view_.History().SetClock([this] { return now_; });
    page_.ShowBody(
        QStringLiteral("<FONT id=a>one two</FONT><BR><IMG id=p src=x.gif><TABLE id=t><TR><TD>c</TD></TR></TABLE>"));
    start_ = Body();
  }

  void Type(const QString& letters) {
    for (const QChar letter : letters) Key(letter.toUpper().unicode());
  }
  void Key(int code) { page_.Document().Dispatch(HTMLEventObj(EventType::KeyUp).Key(code, false)); }
  void Select(const QString& id, int from, int to) {
    const Node* const text = TextOf(Named(id));
    page_.Document().selection().Select({BoundaryPoint::InText(text, from), BoundaryPoint::InText(text, to)});
  }
  NodeId IdOf(const QString& id) { return Named(id).node()->id(); }
  // As the page's own scripts would change it.
  void PageSays(const char* what, const QJsonArray& entry) {
    ApplyForeignChanges(page_.Document().gateway(), QJsonObject{{QLatin1String(what), QJsonArray{entry}}});
  }

  void PagePutsTextBefore(const QString& id) {
    const Node* const next = Named(id).node();
    QJsonArray children{next->parent()->id()};
    for (const Node* child = next->parent()->firstChild(); child; child = child->next()) {
      if (child == next) children.append(QJsonArray{3, 5000, "between"});
      children.append(child->id());
    }
    PageSays("children", children);
  }

  qint64 now_ = 0;
  QString start_;
};

TEST_F(UndoTest, ThereIsNothingToUndoInAPageThatWasOnlyOpened) {
  EXPECT_FALSE(view_.History().CanUndo());
  EXPECT_FALSE(view_.History().CanRedo());
  view_.Undo();
  view_.Redo();
  EXPECT_EQ(start_, Body());
}

TEST_F(UndoTest, LettersInARowAreOneStep) {
  ASSERT_TRUE(page_.PutPoint("a", 3));
  Type("abc");
  const QString typed = Body();
  EXPECT_EQ("Typing", view_.History().UndoName());
  view_.Undo();
  EXPECT_EQ(start_, Body());
  EXPECT_FALSE(view_.History().CanUndo());
  EXPECT_EQ("Typing", view_.History().RedoName());
  view_.Redo();
  EXPECT_EQ(typed, Body());
  EXPECT_FALSE(view_.History().CanRedo());
}

TEST_F(UndoTest, ARestOfTwoSecondsBeginsAStepOfItsOwn) {
  ASSERT_TRUE(page_.PutPoint("a", 3));
  Type("a");
  now_ += 1999;
  Type("b");
  const QString two = Body();
  now_ += 2000;
  Type("c");
  view_.Undo();
  EXPECT_EQ(two, Body());
  view_.Undo();
  EXPECT_EQ(start_, Body());
}

TEST_F(UndoTest, AClickEndsARunOfLetters) {
  ASSERT_TRUE(page_.PutPoint("a", 3));
  Type("a");
  const QString one = Body();
  Click("a");
  ASSERT_TRUE(page_.PutPoint("a", 0));
  Type("b");
  view_.Undo();
  EXPECT_EQ(one, Body());
}

TEST_F(UndoTest, AReturnBeginsARunOfLetters) {
  ASSERT_TRUE(page_.PutPoint("a", 3));
  Type("ab");
  const QString before = Body();
  Key(13);
  Type("c");
  view_.Undo();
  EXPECT_EQ(before, Body());
  view_.Undo();
  EXPECT_EQ(start_, Body());
}

TEST_F(UndoTest, BackspaceIsPartOfTheRun) {
  ASSERT_TRUE(page_.PutPoint("a", 3));
  Type("ab");
  Key(8);
  Key(8);
  Key(8);
  view_.Undo();
  EXPECT_EQ(start_, Body());
}

TEST_F(UndoTest, EachCommandIsOneStepWithItsName) {
  const QString clip = QStringLiteral("clip");
  QGuiApplication::clipboard()->setText(clip);
  const std::vector<std::pair<QString, std::function<void()>>> commands = {
      {"Cut", [&] { Select("a", 0, 3), view_.Cut(); }},
      {"Paste", [&] { page_.PutPoint("a", 1), view_.Paste(2); }},
      {"Text Color", [&] { Select("a", 0, 3), view_.SetSelColor("#FF0000"); }},
      {"Text Back Color", [&] { Select("a", 0, 3), view_.SetSelBackColor("#FF0000"); }},
      {"Font", [&] { Select("a", 1, 3), view_.SetSelFontFace("Arial"); }},
      {"Font Size", [&] { Select("a", 1, 3), view_.SetSelFontSize("6"); }},
      {"Bold", [&] { Select("a", 1, 3), view_.ToggleBold(); }},
      {"Add Link", [&] { Select("a", 1, 3), view_.CreateLinkSel("http://x/"); }},
      {"Replace", [&] { Select("a", 1, 3), view_.SetSelText("<B>n</B>"); }},
      {"Delete", [&] { view_.DeleteElement(Named("p")); }},
      {"Add Table", [&] { view_.AddTable("1", "2", "3", "#FFFFFF", "Left", "Left", "Top", "5"); }},
      {"Add Picture", [&] { InsertPageHTML(view_, "<IMG src=y.gif>"); }},
      {"Move", [&] { DoubleClick("p"), view_.MoveElementOneElement(-1); }},
      {"Move", [&] { DoubleClick("p"), view_.MoveElementOneSpace(2); }},
      {"Page Title", [&] { view_.SetTitle("new"); }},
      {"Back Color", [&] { view_.SetBGColor("#123456"); }},
      {"Back Picture", [&] { view_.SetBackPic("b.gif"); }},
      {"Body Font Face", [&] { view_.SetBodyFontName("Arial"); }},
      {"Body Font Size", [&] { view_.SetBodyFontSize("5"); }},
      {"Body Text Color", [&] { view_.SetBodyFontColor("#00FF00"); }},
      {"Link Color", [&] { view_.SetLinkColor("#00FF00"); }},
  };
  const QString page = view_.Source();
  for (const auto& [name, command] : commands) {
    const WBUC::Values values = view_.StoredValues();
    command();
    const QString changed = view_.Source();
    ASSERT_NE(page, changed) << qPrintable(name);
    EXPECT_EQ(name, view_.History().UndoName());
    view_.Undo();
    EXPECT_EQ(page, view_.Source()) << qPrintable(name);
    EXPECT_EQ(values, view_.StoredValues()) << qPrintable(name);
    EXPECT_FALSE(view_.History().CanUndo()) << qPrintable(name);
    view_.Redo();
    EXPECT_EQ(changed, view_.Source()) << qPrintable(name);
    view_.Undo();
  }
}

TEST_F(UndoTest, ACommandThatChangesNothingLeavesNoStep) {
  view_.Cut();
  Select("a", 0, 3);
  view_.Copy();
  view_.SetBodyFontSize(view_.BodyFontSize());
  EXPECT_FALSE(view_.History().CanUndo());
}

TEST_F(UndoTest, WhatWasSelectedIsSelectedAgain) {
  Select("a", 1, 3);
  view_.ToggleBold();
  Click("p");
  page_.Document().selection().empty();
  view_.Undo();
  EXPECT_EQ("ne", view_.SelText());
  page_.Document().selection().empty();
  view_.Redo();
  EXPECT_EQ("ne", view_.SelText());
}

TEST_F(UndoTest, TheInsertionPointIsWhereItWas) {
  ASSERT_TRUE(page_.PutPoint("a", 3));
  Type("xy");
  Click("p");
  ASSERT_FALSE(view_.HasCurrentTextRange());
  view_.Undo();
  Type("z");
  EXPECT_EQ("onez two", TextOf(Named("a"))->data());
}

TEST_F(UndoTest, AnElementThatWasSelectedIsSelectedAgain) {
  DoubleClick("p");
  view_.Cut();
  EXPECT_EQ(WBUC::NothingSelected, view_.IfSelection());
  view_.Undo();
  EXPECT_EQ(WBUC::ElementSelected, view_.IfSelection());
  EXPECT_EQ("IMG", view_.CurrentSelElementTag());
  view_.Cut();
  EXPECT_FALSE(Named("p"));
}

TEST_F(UndoTest, AnElementThatComesBackIsTheSameElement) {
  const HTMLElement picture = Named("p");
  view_.DeleteElement(picture);
  ASSERT_FALSE(picture.node()->IsAttached());
  view_.Undo();
  EXPECT_TRUE(picture.node()->IsAttached());
  EXPECT_EQ(picture.node(), Named("p").node());
}

TEST_F(UndoTest, ANewCommandForgetsWhatWasUndone) {
  view_.SetTitle("one");
  view_.Undo();
  view_.SetTitle("two");
  EXPECT_FALSE(view_.History().CanRedo());
  view_.Undo();
  EXPECT_EQ("", view_.Title());
}

TEST_F(UndoTest, AnotherPageBeginsAnew) {
  view_.SetTitle("one");
  view_.Undo();
  view_.SetTitle("two");
  view_.Undo();
  page_.ShowBody("other");
  EXPECT_FALSE(view_.History().CanUndo());
  EXPECT_FALSE(view_.History().CanRedo());
}

TEST_F(UndoTest, AValueThatThePageHadAlreadyIsNotTakenBackWithTheStepBefore) {
  PageSays("attributes", {page_.Document().body().node()->id(), "bgcolor", "#FFFF00"});
  ASSERT_TRUE(page_.PutPoint("a", 3));
  Type("x");
  ASSERT_NE("#FFFF00", view_.BGColor());
  view_.SetBGColor("#FFFF00");
  view_.Undo();
  EXPECT_EQ("one two", TextOf(Named("a"))->data());
  EXPECT_EQ("#FFFF00", view_.BGColor());
}

TEST_F(UndoTest, AStepTakesBackTheValuesThatItChangedAndNoOthers) {
  PageSays("attributes", {page_.Document().body().node()->id(), "bgcolor", "#FFFF00"});
  const QString before = view_.BodyFontColor();
  view_.SetBodyFontColor("#123456");
  ASSERT_NE("#FFFF00", view_.BGColor());
  view_.SetBGColor("#FFFF00");
  view_.Undo();
  EXPECT_EQ(before, view_.BodyFontColor());
  EXPECT_EQ("#FFFF00", view_.BGColor());
  view_.Redo();
  EXPECT_EQ("#123456", view_.BodyFontColor());
  EXPECT_EQ("#FFFF00", view_.BGColor());
}

TEST_F(UndoTest, CommandsInsideACommandArePartOfIt) {
  {
    const auto step = view_.UndoStep("Both");
    view_.SetTitle("one");
    view_.SetBGColor("#123456");
    EXPECT_FALSE(view_.History().CanUndo()) << "not in the middle";
  }
  EXPECT_EQ("Both", view_.History().UndoName());
  view_.Undo();
  EXPECT_EQ("", view_.Title());
  EXPECT_FALSE(view_.History().CanUndo());
}

TEST_F(UndoTest, WhatAScriptChangesElsewhereStays) {
  ASSERT_TRUE(page_.PutPoint("a", 3));
  Type("abc");
  PageSays("attributes", {IdOf("p"), "id", "p", "src", "other.gif"});
  PageSays("data", {TextOf(HTMLElement(Named("t").node()->firstChild()->firstChild()->firstChild()))->id(), "tick"});
  view_.Undo();
  EXPECT_EQ("one two", TextOf(Named("a"))->data());
  EXPECT_EQ("other.gif", Named("p").getAttribute("src", 0));
  view_.Redo();
  EXPECT_EQ("oneabc two", TextOf(Named("a"))->data());
}

TEST_F(UndoTest, WhatAScriptChangesInTheSamePlaceEndsTheHistoryThere) {
  view_.SetTitle("first");
  ASSERT_TRUE(page_.PutPoint("a", 3));
  Type("abc");
  DoubleClick("p");
  view_.Cut();
  PageSays("data", {TextOf(Named("a"))->id(), "of the script"});
  EXPECT_EQ("Cut", view_.History().UndoName());
  view_.Undo();
  EXPECT_TRUE(Named("p"));
  EXPECT_FALSE(view_.History().CanUndo());
  EXPECT_EQ("of the script", TextOf(Named("a"))->data());
}

TEST_F(UndoTest, WhatAScriptTakesAwayIsNotLookedFor) {
  Select("a", 0, 3);
  view_.ToggleBold();
  QJsonArray children{page_.Document().tree().bodyNode()->id()};
  for (const Node* child = page_.Document().tree().bodyNode()->firstChild()->next(); child; child = child->next())
    children.append(child->id());
  PageSays("children", children);
  EXPECT_FALSE(view_.History().CanUndo());
  EXPECT_FALSE(Named("a"));
}

TEST_F(UndoTest, AScriptThatFillsWhatCameBackDoesNotKeepItFromGoing) {
  InsertPageHTML(view_, "<DIV id=d><B>x</B></DIV>");
  view_.Undo();
  view_.Redo();
  PageSays("children", {IdOf("d"), QJsonArray{3, 5000, "of the script"}});
  view_.Undo();
  EXPECT_EQ(start_, Body());
  view_.Redo();
  EXPECT_EQ("of the script", TextOf(Named("d"))->data());
}

TEST_F(UndoTest, WhatAScriptPutsBetweenTwoThingsEndsTheHistoryBeforeTheSecond) {
  const HTMLElement body = page_.Document().body();
  view_.SetTitle("first");
  HTMLElement(body).insertAdjacentHTML("BeforeEnd", "<B id=one>1</B>");
  view_.SetTitle("second");
  HTMLElement(body).insertAdjacentHTML("BeforeEnd", "<B id=two>2</B>");
  PagePutsTextBefore("two");
  const QString before = Body();
  view_.Undo();
  EXPECT_FALSE(Named("two"));
  view_.Undo();
  EXPECT_EQ("first", view_.Title());
  EXPECT_FALSE(view_.History().CanUndo()) << "the first one would come back behind what the script has put in";
  view_.Redo();
  view_.Redo();
  EXPECT_EQ(before, Body());
}

TEST_F(UndoTest, WhatAScriptPutsBetweenTwoThingsThatWentEndsWhatCanBeRedone) {
  const HTMLElement body = page_.Document().body();
  DoubleClick("p");
  view_.Cut();
  HTMLElement(HTMLElement(body).children().item(1)).setOuterHTML("");
  while (view_.History().CanUndo()) view_.Undo();
  ASSERT_EQ(start_, Body());
  PagePutsTextBefore("p");
  const QString before = Body();
  view_.Redo();
  EXPECT_FALSE(Named("p"));
  EXPECT_FALSE(view_.History().CanRedo()) << "the line break would come back behind what the script has put in";
  view_.Undo();
  EXPECT_EQ(before, Body());
}

TEST_F(UndoTest, APlaceInWhatAScriptAddedLeavesWithIt) {
  InsertPageHTML(view_, "<DIV id=d>x</DIV>");
  view_.DeleteElement(Named("d"));
  view_.Undo();
  PageSays("children", {IdOf("d"), QJsonArray{3, 5000, "of the script"}});
  const Node* const text = TextOf(Named("d"));
  LiveRange held{BoundaryPoint::InText(text, 4), BoundaryPoint::InText(text, 4)};
  page_.Document().tree().AddRange(&held);
  view_.Redo();
  page_.Document().tree().RemoveRange(&held);
  EXPECT_TRUE(held.start.container->IsAttached());
}

TEST_F(UndoTest, TheOldestStepsGoWhenThereIsNoRoom) {
  view_.History().SetLimit(3000);
  for (int i = 0; i < 100; ++i) view_.SetTitle(QString::number(i));
  EXPECT_LE(view_.History().Size(), 3000);
  ASSERT_TRUE(view_.History().CanUndo());
  int undone = 0;
  for (; view_.History().CanUndo(); ++undone) view_.Undo();
  EXPECT_GT(undone, 1);
  EXPECT_LT(undone, 99);
  EXPECT_EQ(QString::number(99 - undone), view_.Title());
}

TEST_F(UndoTest, ACommandThatIsTooLargeLeavesNoHalfBehind) {
  view_.SetTitle("before");
  view_.History().SetLimit(5000);
  {
    const auto step = view_.UndoStep("Much");
    for (int i = 0; i < 100; ++i) view_.SetTitle(QString::number(i));
  }
  EXPECT_FALSE(view_.History().CanUndo());
  view_.History().SetLimit(EditHistory::kLimit);
  view_.SetTitle("behind");
  view_.Undo();
  EXPECT_EQ("99", view_.Title());
  EXPECT_FALSE(view_.History().CanUndo());
}

TEST_F(UndoTest, TenThousandLettersTakeLittleRoom) {
  ASSERT_TRUE(page_.PutPoint("a", 3));
  for (int i = 0; i < 10000; ++i) {
    Key(i % 40 == 39 ? 13 : i % 6 == 5 ? ' ' : 'A');
    if (i % 100 == 99) now_ += EditHistory::kRestMs;
  }
  EXPECT_LE(view_.History().Size(), 2 << 20);
}

TEST_F(UndoTest, APageThatGoesWithASelectionInHandHurtsNobody) {
  DoubleClick("p");
  view_.Cut();
  page_.view.Navo("/nowhere", false);
  view_.Undo();
  page_.browser->Finish();
  view_.Undo();
  EXPECT_FALSE(view_.History().CanUndo());
}

}  // namespace
