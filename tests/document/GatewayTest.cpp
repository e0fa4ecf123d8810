#include "Gateway.h"

#include <gtest/gtest.h>

#include <random>

#include "QtPrinters.h"
#include "RandomSeed.h"
#include "TestPage.h"
#include "TreeBuilder.h"

namespace {

// A live range as the DOM standard describes it, with indices, moved by its rules word for word.
struct SlowPoint {
  const Node* node;
  int offset;
};

class SlowRanges {
 public:
  std::vector<SlowPoint> points;

  void Inserted(const Node* parent, int index) {
    for (SlowPoint& point : points)
      if (point.node == parent && point.offset > index) ++point.offset;
  }
  void Removing(const Node* node) {
    const Node* const parent = node->parent();
    const int index = node->Index();
    for (SlowPoint& point : points) {
      if (node->Contains(point.node)) {
        point = {parent, index};
      } else if (point.node == parent && point.offset > index) {
        --point.offset;
      }
    }
  }
  void Replaced(const Node* node, int offset, int count, int length) {
    for (SlowPoint& point : points) {
      if (point.node != node || point.offset <= offset) continue;
      point.offset = point.offset <= offset + count ? offset : point.offset + length - count;
    }
  }
};

class RandomEdits {
 public:
  explicit RandomEdits(unsigned seed) : random_(seed), page_("a<b>b<i>c</i></b>d<p>e</p>") {
    for (int at = 0; at < 6; ++at) {
      ranges_.push_back(std::make_unique<LiveRange>());
      Place(*ranges_.back());
      page_.document.tree().AddRange(ranges_.back().get());
    }
  }
  ~RandomEdits() {
    for (auto& range : ranges_) page_.document.tree().RemoveRange(range.get());
  }

  void Step() {
    Place(*ranges_[Below(int(ranges_.size()))]);
    SlowRanges slow;
    for (const auto& range : ranges_)
      for (const BoundaryPoint& point : {range->start, range->end})
        slow.points.push_back({point.container, point.DomOffset()});
    Edit(slow);
    std::size_t at = 0;
    for (const auto& range : ranges_)
      for (const BoundaryPoint& point : {range->start, range->end}) {
        ASSERT_EQ(point.container, slow.points[at].node);
        ASSERT_EQ(point.DomOffset(), slow.points[at].offset);
        ++at;
      }
    ASSERT_EQ(ProblemsOf(page_.document, true), QStringList());
    ASSERT_EQ(page_.page->DifferenceTo(page_.document.tree()), "");
  }

 private:
  int Below(int bound) { return int(random_() % unsigned(bound)); }

  const Node* Pick(bool text, bool withBody) {
    std::vector<const Node*> nodes;
    const Node* const body = page_.document.tree().bodyNode();
    for (const Node* node = body; node; node = NextInTree(node, body))
      if ((node != body || withBody) && (text ? node->IsText() : node->IsElement())) nodes.push_back(node);
    return nodes.empty() ? nullptr : nodes[std::size_t(Below(int(nodes.size())))];
  }

  BoundaryPoint PointIn(const Node* node) {
    if (node->IsText()) return BoundaryPoint::InText(node, Below(node->Length() + 1));
    BoundaryPoint point = BoundaryPoint::AtStart(node);
    for (int skip = Below(4); skip > 0 && point.before; --skip) point.before = point.before->next();
    return point;
  }

  void Place(LiveRange& range) {
    const Node* const text = Pick(true, false);
    range.start = PointIn(text && Below(2) ? text : Pick(false, true));
    range.end = PointIn(text && Below(2) ? text : Pick(false, true));
    if (ComparePoints(page_.document.tree().order(), range.start, range.end) > 0) std::swap(range.start, range.end);
  }

  void Edit(SlowRanges& slow) {
    Gateway& gateway = page_.document.gateway();
    const Node* const text = Pick(true, false);
    switch (Below(8)) {
      case 0: {
        const Node* const parent = Pick(false, true);
        const Node* const before = PointIn(parent).before;
        Node* const node = Below(2) ? TreeBuilder::Text("xyz") : TreeBuilder::Element(Known().b);
        if (node->IsElement()) TreeBuilder::Insert(node, TreeBuilder::Text("uv"));
        gateway.Insert(parent, before, node);
        slow.Inserted(parent, node->Index());
        break;
      }
      case 1:
        if (const Node* node = Below(2) ? text : Pick(false, false)) {
          slow.Removing(node);
          gateway.Remove(node);
        }
        break;
      case 2:
        if (text) {
          const int offset = Below(text->Length() + 1);
          const int count = Below(text->Length() - offset + 1);
          const QString data = QString(Below(3), u'n');
          gateway.ReplaceData(text, offset, count, data);
          slow.Replaced(text, offset, count, int(data.size()));
        }
        break;
      case 3:
        if (text && text->Length() > 1) {
          const int offset = 1 + Below(text->Length() - 1);
          const Node* const rest = gateway.SplitText(text, offset);
          slow.Inserted(text->parent(), rest->Index());
          for (SlowPoint& point : slow.points) {
            if (point.node == text && point.offset > offset)
              point = {rest, point.offset - offset};
            else if (point.node == text->parent() && point.offset == rest->Index())
              ++point.offset;
          }
        }
        break;
      case 4:
        if (text && text->next() && text->next()->IsText()) {
          for (SlowPoint& point : slow.points) {
            if (point.node == text->next())
              point = {text, text->Length() + point.offset};
            else if (point.node == text->parent() && point.offset == text->next()->Index())
              point = {text, text->Length()};
          }
          // What is left of the removal's rule: points behind the second text.
          slow.Removing(text->next());
          gateway.JoinWithNext(text);
        }
        break;
      case 5:
        if (const Node* const first = Below(2) ? text : Pick(false, false)) {
          const Node* last = first;
          for (int more = Below(3); more > 0 && last->next(); --more) last = last->next();
          const int from = first->Index();
          const int to = last->Index();
          const Node* const parent = first->parent();
          Node* const wrapper = TreeBuilder::Element(Known().font, {{"color", "red"}});
          gateway.Wrap(first, last, wrapper);
          for (SlowPoint& point : slow.points) {
            if (point.node != parent || point.offset <= from) continue;
            point = point.offset > to ? SlowPoint{parent, point.offset - (to - from)}
                                      : SlowPoint{wrapper, point.offset - from};
          }
        }
        break;
      case 6:
        if (const Node* const element = Pick(false, false)) {
          const Node* const parent = element->parent();
          const int at = element->Index();
          const int inside = element->lastChild() ? element->lastChild()->Index() + 1 : 0;
          gateway.Unwrap(element);
          for (SlowPoint& point : slow.points) {
            if (point.node == element) {
              point = {parent, at + point.offset};
            } else if (point.node == parent && point.offset > at) {
              point.offset += inside - 1;
            }
          }
        }
        break;
      default: {
        const Node* const element = Pick(false, true);
        if (Below(2))
          gateway.SetAttribute(element, "A" + QString::number(Below(3)), QString::number(Below(3)));
        else
          gateway.RemoveAttribute(element, "a" + QString::number(Below(3)));
      }
    }
  }

  std::mt19937 random_;
  TestPage page_;
  std::vector<std::unique_ptr<LiveRange>> ranges_;
};

TEST(Gateway, RangesAndLivePageFollowRandomEdits) {
  for (const unsigned seed : RandomSeeds("RangesAndLivePageFollowRandomEdits", 40)) {
    RandomEdits edits(seed);
    for (int step = 0; step < 150; ++step) {
      edits.Step();
      if (testing::Test::HasFatalFailure()) FAIL() << "seed " << seed << ", step " << step;
    }
  }
}

TEST(Gateway, WhatWouldChangeNothingIsNotTold) {
  TestPage page("<b x=1>a</b>");
  class Silent : public ReplicaPage {
   public:
    using ReplicaPage::ReplicaPage;
    void Changed(const TreeStep&) override { ++told; }
    int told = 0;
  } silent(page.document.tree());
  page.document.tree().SetPage(&silent);
  Gateway& gateway = page.document.gateway();
  gateway.SetAttribute(page.Find("B"), "X", "1");
  gateway.RemoveAttribute(page.Find("B"), "y");
  gateway.ReplaceData(page.Text("a"), 1, 0, "");
  EXPECT_EQ(silent.told, 0);
  gateway.TakeAttributes(page.Find("B"), {{"x", "2"}, {"y", "z"}});
  gateway.ReplaceData(page.Text("a"), 0, 1, "b", Gateway::Origin::Page);
  EXPECT_EQ(silent.told, 0) << "what the page did isn't told back";
  gateway.SetAttribute(page.Find("B"), "X", "3");
  EXPECT_EQ(silent.told, 1);
  EXPECT_EQ(page.Body(), "<b x=\"3\" y=\"z\">b</b>");
}

}  // namespace
