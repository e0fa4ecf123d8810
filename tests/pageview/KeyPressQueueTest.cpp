#include "KeyPressQueue.h"

#include "LivePage.h"
#include "PageViewFixture.h"

namespace {

// A live page whose answers come when the test gives them.
class LatePage : public LivePage {
 public:
  explicit LatePage(HTMLDocument& document) : document_(document) { document.tree().SetPage(this); }
  ~LatePage() override { document_.tree().SetPage(nullptr); }
  void Changed(const TreeStep&) override {}
  void ShowSelection(const LiveRange*) override {}
  void TakesKeys(bool on) override { takesKeys = on; }
  void Outline(const Node*) override {}
  void Measure(const BoundaryPoint&, Answer answer) override { questions.push_back(std::move(answer)); }

  std::vector<Answer> questions;
  bool takesKeys = false;

 private:
  HTMLDocument& document_;
};

class LateAnswers : public PageViewTest {
 protected:
  LateAnswers() {
    page_.ShowBody("<FONT id='here'>abcd</FONT><IMG id='img' src='i.gif'>");
    late_ = std::make_unique<LatePage>(page_.Document());
    EXPECT_TRUE(page_.PutPoint("here", 2));
  }
  void Key(int code) { page_.browser->KeyUp(code); }
  void Answer(std::size_t question, int x, int y) { late_->questions.at(question)(QPoint(x, y)); }

  struct Told {
    QString sKey;
    int x, y;
    bool operator==(const Told&) const = default;
  };
  // In pixels.
  std::vector<Told> Raised() const {
    std::vector<Told> all;
    for (const auto& one : pressed_) all.push_back({one[0].toString(), one[1].toInt() / 15, one[2].toInt() / 15});
    return all;
  }

  QSignalSpy pressed_{&view_, &WBUC::KeyPress};
  std::unique_ptr<LatePage> late_;
};

TEST_F(LateAnswers, KeyPressWaitsForTheAnswer) {
  Key('A');
  EXPECT_TRUE(Raised().empty());
  Answer(0, 30, 40);
  EXPECT_EQ((std::vector<Told>{{"a", 30, 40}}), Raised());
}

TEST_F(LateAnswers, TheOrderIsThatOfTheKeysWhateverThatOfTheAnswers) {
  Key('A');
  Key('B');
  Key('C');
  ASSERT_EQ(3U, late_->questions.size());
  Answer(2, 3, 3);
  Answer(1, 2, 2);
  EXPECT_TRUE(Raised().empty());
  Answer(0, 1, 1);
  const auto raised = Raised();
  ASSERT_EQ(3U, raised.size());
  EXPECT_EQ("a", raised[0].sKey);
  EXPECT_EQ("b", raised[1].sKey);
  EXPECT_EQ("c", raised[2].sKey);
}

TEST_F(LateAnswers, ALeftPressFlushesWithTheLastPositionKnown) {
  Key('A');
  Answer(0, 30, 40);
  Key('B');
  Key('C');
  Fire(EventType::MouseDown, "img");
  EXPECT_EQ((std::vector<Told>{{"a", 30, 40}, {"b", 30, 40}, {"c", 30, 40}}), Raised());
  // Answers that come after it say nothing any more.
  Answer(1, 99, 99);
  Answer(2, 99, 99);
  EXPECT_EQ(3U, Raised().size());
}

TEST_F(LateAnswers, ARightPressFlushesNothing) {
  Key('A');
  Fire(EventType::MouseDown, "img", 2);
  EXPECT_TRUE(Raised().empty());
}

TEST_F(LateAnswers, NavoFlushes) {
  Key('A');
  view_.Navo(page_.test.Path("none.html"), false);
  ASSERT_EQ(1U, Raised().size());
  EXPECT_EQ("a", Raised()[0].sKey);
}

TEST_F(LateAnswers, HalfASecondWithoutAnAnswerFlushes) {
  Key('A');
  Answer(0, 30, 40);
  Key('B');
  EXPECT_EQ(1U, Raised().size());
  ASSERT_TRUE(pressed_.wait(3000));
  EXPECT_EQ((std::vector<Told>{{"a", 30, 40}, {"b", 30, 40}}), Raised());
}

TEST_F(LateAnswers, AnAnswerAfterThatIsToldWithoutAKey) {
  Key('A');
  ASSERT_TRUE(pressed_.wait(3000));
  Answer(0, 30, 40);
  ASSERT_EQ(2U, pressed_.size());
  EXPECT_EQ((Told{"", 30, 40}), Raised()[1]);
  // One that says what has been told already isn't news.
  Key('B');
  ASSERT_TRUE(pressed_.wait(3000));
  Answer(1, 30, 40);
  EXPECT_EQ(3U, pressed_.size());
}

TEST_F(LateAnswers, AnAnswerAfterThatSaysNothingOnceMoreHasCome) {
  Key('A');
  ASSERT_TRUE(pressed_.wait(3000));
  Key('B');
  Answer(0, 30, 40);
  EXPECT_EQ(1U, pressed_.size());
  ASSERT_TRUE(pressed_.wait(3000));
  Click("here");
  Answer(1, 50, 60);
  EXPECT_EQ(2U, pressed_.size());
}

TEST_F(LateAnswers, TheInsertionPointIsToldWhenThePageIsBack) {
  emit page_.browser->Recovered();
  ASSERT_EQ(1U, late_->questions.size());
  Answer(0, 30, 40);
  EXPECT_EQ((std::vector<Told>{{"", 30, 40}}), Raised());
  view_.SetCurrentTextRange(nullptr);
  emit page_.browser->Recovered();
  EXPECT_EQ(1U, pressed_.size());
}

TEST_F(LateAnswers, ASlowPageThatDoesAnswerIsGivenItsTimeAnew) {
  Key('A');
  Key('B');
  QTimer::singleShot(300, [this] { Answer(0, 30, 40); });
  QTimer::singleShot(600, [this] { Answer(1, 50, 60); });
  while (pressed_.size() < 2) ASSERT_TRUE(pressed_.wait(3000));
  EXPECT_EQ((std::vector<Told>{{"a", 30, 40}, {"b", 50, 60}}), Raised());
}

TEST_F(LateAnswers, ThePositionOfAClickIsTheLastOneKnown) {
  Click("here");
  Key('A');
  Fire(EventType::MouseDown, "img");
  EXPECT_EQ((std::vector<Told>{{"a", caretCorner.x(), caretCorner.y()}}), Raised());
}

TEST_F(LateAnswers, KeysWithoutAnInsertionPointGoBehindPendingOnes) {
  Key('A');
  view_.SetCurrentTextRange(nullptr);
  Key('B');
  EXPECT_TRUE(Raised().empty());
  late_->questions.at(0)(std::nullopt);
  const auto raised = Raised();
  ASSERT_EQ(2U, raised.size());
  EXPECT_EQ("a", raised[0].sKey);
  EXPECT_EQ((Told{"", 0, 0}), raised[1]);
}

TEST_F(LateAnswers, AKeyWithoutAnInsertionPointIsAtZeroEvenWhenFlushedBehindAnother) {
  Key('A');
  Answer(0, 30, 40);
  Key('B');
  view_.SetCurrentTextRange(nullptr);
  Key('C');
  Fire(EventType::MouseDown, "img");
  EXPECT_EQ((std::vector<Told>{{"a", 30, 40}, {"b", 30, 40}, {"", 0, 0}}), Raised());
}

TEST_F(LateAnswers, APageWithoutAnAnswerKeepsTheLastPosition) {
  Key('A');
  Answer(0, 30, 40);
  Key('B');
  late_->questions.at(1)(std::nullopt);
  EXPECT_EQ((Told{"b", 30, 40}), Raised().back());
}

TEST_F(LateAnswers, ThePageIsToldWhetherKeysGoIn) {
  EXPECT_TRUE(late_->takesKeys);
  Fire(EventType::MouseDown, "img");
  EXPECT_FALSE(late_->takesKeys);
  Click("here");
  EXPECT_TRUE(late_->takesKeys);
}

TEST_F(LateAnswers, AnAnswerAfterTheRangeIsGoneDoesNoHarm) {
  Key('A');
  view_.SetCurrentTextRange(nullptr);
  Answer(0, 30, 40);
  ASSERT_EQ(1U, Raised().size());
  EXPECT_EQ("a", Raised()[0].sKey);
}

}  // namespace
