// Places that the page named some batches ago are where a live range would be that had stood there since.
#include "PlaceHistory.h"

#include <gtest/gtest.h>

#include <random>

#include "QtPrinters.h"
#include "TestPage.h"
#include "TreeBuilder.h"

namespace {

// Each step that it is told becomes part of the batch at hand.
class RecordingPage : public ReplicaPage {
 public:
  using ReplicaPage::ReplicaPage;
  void Changed(const TreeStep& step) override { history.Add(batch, step); }
  PlaceHistory history;
  int batch = 1;
};

class PlaceHistoryOnAPage : public testing::Test {
 protected:
  // A page with one place marked, where the live page has carried out nothing of what follows.
  void Open(const QString& content) {
    page_ = std::make_unique<TestPage>(content);
    recorder_ = std::make_unique<RecordingPage>(page_->document.tree());
    page_->document.tree().SetPage(recorder_.get());
    named_ = NodePlace::Of(page_->marked.start);
  }
  Gateway& gateway() { return page_->document.gateway(); }
  const Node* Text(const QString& data) { return page_->Text(data); }
  // The content with a mark where the place that was named before is now.
  QString Now() {
    const NodePlace now = recorder_->history.Now(named_);
    const Node* const container = page_->document.tree().FindNode(now.container);
    if (!container) return QStringLiteral("nowhere");
    return page_->Show(container->IsText() ? BoundaryPoint::InText(container, now.rest)
                                           : BoundaryPoint{container, 0, page_->document.tree().FindNode(now.rest)});
  }

  std::unique_ptr<TestPage> page_;
  std::unique_ptr<RecordingPage> recorder_;
  NodePlace named_;
};

TEST_F(PlaceHistoryOnAPage, BehindInsertedAndRemovedTextStaysWithItsLetter) {
  Open("one two^ three");
  gateway().ReplaceData(Text("one"), 0, 0, "zero ");
  EXPECT_EQ(Now(), "zero one two^ three");
  gateway().ReplaceData(Text("one"), 0, 9, "");
  EXPECT_EQ(Now(), "two^ three");
}

TEST_F(PlaceHistoryOnAPage, InReplacedTextMovesToWhereThatWas) {
  Open("one tw^o three");
  gateway().ReplaceData(Text("one"), 3, 5, "-");
  EXPECT_EQ(Now(), "one^-three");
}

TEST_F(PlaceHistoryOnAPage, BehindACutGoesIntoTheSecondPiece) {
  Open("one two th^ree");
  gateway().SplitText(Text("one"), 7);
  EXPECT_EQ(Now(), "one two th^ree");
  EXPECT_EQ(recorder_->history.Now(named_), (NodePlace{Text(" three")->id(), 3}));
}

TEST_F(PlaceHistoryOnAPage, AtACutStaysInTheFirstPiece) {
  Open("one two^ three");
  gateway().SplitText(Text("one"), 7);
  EXPECT_EQ(recorder_->history.Now(named_), (NodePlace{Text("one two")->id(), 7}));
}

TEST_F(PlaceHistoryOnAPage, InATextThatIsJoinedToTheOneBeforeGoesThere) {
  Open("one<BR>tw^o");
  gateway().Remove(page_->Find("BR"));
  gateway().JoinWithNext(Text("one"));
  EXPECT_EQ(Now(), "onetw^o");
}

TEST_F(PlaceHistoryOnAPage, InWhatIsRemovedMovesToWhereThatWas) {
  Open("a<b>b<i>c^c</i></b><u>d</u>");
  gateway().Remove(page_->Find("B"));
  EXPECT_EQ(Now(), "a^<u>d</u>");
  gateway().Remove(page_->Find("U"));
  EXPECT_EQ(Now(), "a^");
}

TEST_F(PlaceHistoryOnAPage, BeforeAnInsertionStaysBeforeIt) {
  Open("a^<u>d</u>");
  named_ = NodePlace::Of(BoundaryPoint::Before(page_->Find("U")));
  gateway().Insert(page_->document.tree().bodyNode(), page_->Find("U"), TreeBuilder::Element(Known().b));
  EXPECT_EQ(Now(), "a^<b></b><u>d</u>");
}

TEST_F(PlaceHistoryOnAPage, InWhatIsWrappedAndUnwrappedStaysWithItsLetter) {
  Open("one<b>t^wo</b>three");
  gateway().Wrap(page_->Find("B"), page_->Find("B"), TreeBuilder::Element(Known().font));
  EXPECT_EQ(Now(), "one<font><b>t^wo</b></font>three");
  gateway().Unwrap(page_->Find("B"));
  gateway().Unwrap(page_->Find("FONT"));
  EXPECT_EQ(Now(), "onet^wothree");
}

TEST_F(PlaceHistoryOnAPage, BetweenNodesThatAreWrappedGoesIntoTheWrapperOrBeforeIt) {
  Open("<i>a</i><u>b</u>^");
  const Node* const first = page_->Find("I");
  const Node* const second = page_->Find("U");
  const NodePlace before = NodePlace::Of(BoundaryPoint::Before(first));
  named_ = NodePlace::Of(BoundaryPoint::Before(second));
  gateway().Wrap(first, second, TreeBuilder::Element(Known().b));
  EXPECT_EQ(Now(), "<b><i>a</i>^<u>b</u></b>");
  named_ = before;
  EXPECT_EQ(Now(), "^<b><i>a</i><u>b</u></b>");
}

TEST_F(PlaceHistoryOnAPage, AtTheEndOfAnUnwrappedElementMovesBeforeWhatFollows) {
  Open("a<b>b^</b><u>c</u>");
  named_ = NodePlace::Of(BoundaryPoint::AtEnd(page_->Find("B")));
  gateway().Unwrap(page_->Find("B"));
  EXPECT_EQ(Now(), "ab^<u>c</u>");
}

TEST_F(PlaceHistoryOnAPage, ANodeThatIsGoneIsTheOneItStoodIn) {
  Open("<p>a<b>b<i>c^</i></b></p>");
  const NodeId italic = page_->Find("I")->id();
  const NodeId paragraph = page_->Find("P")->id();
  const NodeId text = Text("a")->id();
  gateway().Insert(page_->Find("P"), nullptr, TreeBuilder::Element(Known().font));
  gateway().Wrap(page_->Find("B"), page_->Find("FONT"), TreeBuilder::Element(Known().a));
  EXPECT_EQ(recorder_->history.Now(italic), italic);
  EXPECT_EQ(recorder_->history.Now(paragraph), paragraph);
  gateway().Unwrap(page_->Find("B"));
  gateway().Remove(page_->Find("A"));
  EXPECT_EQ(recorder_->history.Now(italic), paragraph);
  gateway().Remove(page_->Find("P"));
  EXPECT_EQ(recorder_->history.Now(italic), page_->document.tree().bodyNode()->id());
  EXPECT_EQ(recorder_->history.Now(text), page_->document.tree().bodyNode()->id());
}

TEST_F(PlaceHistoryOnAPage, WhatThePageHadCarriedOutDoesntCountAgain) {
  Open("one^");
  gateway().ReplaceData(Text("one"), 0, 0, "ab");
  recorder_->batch = 2;
  gateway().ReplaceData(Text("one"), 0, 0, "c");
  EXPECT_EQ(recorder_->history.Now(named_).rest, 6);
  recorder_->history.Forget(1);
  EXPECT_EQ(recorder_->history.Now(named_).rest, 4);
  EXPECT_FALSE(recorder_->history.IsEmpty());
  recorder_->history.Forget(2);
  EXPECT_EQ(recorder_->history.Now(named_).rest, 3);
  EXPECT_TRUE(recorder_->history.IsEmpty());
}

TEST_F(PlaceHistoryOnAPage, WhatThePageItselfDidIsNoneOfIt) {
  Open("one^<b>two</b>");
  gateway().Discard(gateway().Take(page_->Find("B")));
  gateway().ReplaceData(Text("one"), 0, 1, "", Gateway::Origin::Page);
  EXPECT_TRUE(recorder_->history.IsEmpty());
}

// Every place of a page, named before each batch of random changes, against live ranges that stood there.
class RandomBatches {
 public:
  explicit RandomBatches(unsigned seed)
      : random_(seed), page_("a<b>b<i>c</i></b>de<p>fgh<u>i</u></p>jkl"), recorder_(page_.document.tree()) {
    page_.document.tree().SetPage(&recorder_);
  }
  ~RandomBatches() {
    for (const Stood& one : stood_) page_.document.tree().RemoveRange(one.range.get());
  }

  void Batch() {
    const auto stand = [&](const BoundaryPoint& point) {
      stood_.push_back(
          {recorder_.batch - 1, NodePlace::Of(point), std::make_unique<LiveRange>(LiveRange{point, point})});
      page_.document.tree().AddRange(stood_.back().range.get());
    };
    const Node* const body = page_.document.tree().bodyNode();
    for (const Node* node = body; node; node = NextInTree(node, body)) {
      for (int at = 0; node->IsText() && at <= node->Length(); ++at) stand(BoundaryPoint::InText(node, at));
      if (node->IsText()) continue;
      for (const Node* child = node->firstChild(); child; child = child->next()) stand(BoundaryPoint::Before(child));
      stand(BoundaryPoint::AtEnd(node));
    }
    for (int steps = 1 + Below(5); steps > 0; --steps) Step();
    ++recorder_.batch;
  }

  int Differences() const {
    int differences = 0;
    PlaceHistory history = recorder_.history;
    for (const Stood& one : stood_) {
      history.Forget(one.applied);
      if (history.Now(one.named) != NodePlace::Of(one.range->start)) ++differences;
    }
    return differences;
  }

 private:
  struct Stood {
    int applied;
    NodePlace named;
    std::unique_ptr<LiveRange> range;
  };

  int Below(int bound) { return int(random_() % unsigned(bound)); }

  const Node* Any(bool text) {
    std::vector<const Node*> nodes;
    const Node* const body = page_.document.tree().bodyNode();
    for (const Node* node = body->firstChild(); node; node = NextInTree(node, body))
      if (text ? node->IsText() : node->IsElement()) nodes.push_back(node);
    return nodes.empty() ? nullptr : nodes[std::size_t(Below(int(nodes.size())))];
  }

  void Step() {
    Gateway& gateway = page_.document.gateway();
    const Node* const text = Any(true);
    const Node* const element = Any(false);
    switch (Below(7)) {
      case 0: {
        const Node* const parent = element ? element : page_.document.tree().bodyNode();
        Node* const fresh = TreeBuilder::Element(Known().b);
        TreeBuilder::Insert(fresh, TreeBuilder::Text("xyz"));
        return gateway.Insert(parent, Below(2) ? parent->firstChild() : nullptr, fresh);
      }
      case 1:
        if (const Node* const node = Below(2) ? text : element) gateway.Remove(node);
        return;
      case 2:
        if (!text) return;
        return gateway.ReplaceData(text, text->Length() / 2, Below(text->Length() - text->Length() / 2 + 1),
                                   QString(Below(3), u'n'));
      case 3:
        if (text && text->Length() > 1) gateway.SplitText(text, 1 + Below(text->Length() - 1));
        return;
      case 4:
        for (const Node* node = text; node; node = node->next())
          if (node->IsText() && node->next() && node->next()->IsText()) return gateway.JoinWithNext(node);
        return;
      case 5:
        if (const Node* const node = Below(2) ? text : element)
          gateway.Wrap(node, node->next() && Below(2) ? node->next() : node, TreeBuilder::Element(Known().font));
        return;
      default:
        if (element) gateway.Unwrap(element);
    }
  }

  std::mt19937 random_;
  TestPage page_;
  RecordingPage recorder_;
  std::vector<Stood> stood_;
};

TEST(PlaceHistory, EveryPlaceIsWhereALiveRangeWouldBe) {
  for (unsigned seed = 0; seed < 300; ++seed) {
    RandomBatches batches(seed);
    for (int batch = 1; batch <= 8; ++batch) {
      batches.Batch();
      ASSERT_EQ(batches.Differences(), 0) << "seed " << seed << ", batch " << batch;
    }
  }
}

}  // namespace
