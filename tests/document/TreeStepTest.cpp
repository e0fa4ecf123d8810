// Every change can be taken back, and taken back again: the tree comes out as it was to the last byte and number, the
// live page follows, and places that the change kept apart are where they were.
#include "TreeStep.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <functional>
#include <map>
#include <random>
#include <set>

#include "QtPrinters.h"
#include "RandomSeed.h"
#include "TestPage.h"
#include "TreeBuilder.h"
#include "TreeCodec.h"

namespace {

using Place = std::pair<NodeId, int>;

Place PlaceOf(const BoundaryPoint& point) {
  return {point.container->id(), point.IsInText() ? point.offset : point.before ? point.before->id() : 0};
}

// A live page that keeps the steps that it was told.
class KeepingPage : public ReplicaPage {
 public:
  using ReplicaPage::ReplicaPage;
  void Changed(const TreeStep& step) override {
    ReplicaPage::Changed(step);
    steps.push_back(step);
  }
  std::vector<TreeStep> steps;
};

class Reversal {
 public:
  explicit Reversal(const QString& content) : page_(content), live_(page_.document.tree()) {
    page_.document.tree().SetPage(&live_);
  }
  ~Reversal() {
    page_.document.tree().SetPage(nullptr);
    StandNowhere();
  }

  TestPage& page() { return page_; }
  Gateway& gateway() { return page_.document.gateway(); }

  // Makes a change, takes it back, makes it again, and takes it back once more; tells what was wrong.
  QString Prove(const std::function<void(Gateway&)>& change) {
    const QByteArray before = Bytes();
    StandEverywhere();
    const std::vector<Place> stood = Places();
    live_.steps.clear();
    change(gateway());
    std::vector<TreeStep> steps = live_.steps;
    kinds_.insert(steps.empty() ? -1 : int(steps.front().index()));
    const QByteArray after = Bytes();
    const std::vector<Place> moved = Places();
    for (int round = 0; round < 2; ++round) {
      steps = Back(steps);
      if (Bytes() != before) return "taken back it is " + Bytes() + " and was " + before;
      if (const QString problems = page_.Problems().join(u'\n'); !OnlyTexts(problems)) return "taken back: " + problems;
      if (round == 0 && !StandAgain(stood, moved)) return "a place that was kept apart isn't where it was";
      steps = Back(steps);
      if (Bytes() != after) return "made again it is " + Bytes() + " and was " + after;
      if (!live_.DifferenceTo(page_.document.tree()).isEmpty()) return live_.DifferenceTo(page_.document.tree());
    }
    StandNowhere();
    return {};
  }

  const std::set<int>& kinds() const { return kinds_; }
  int keptApart() const { return keptApart_; }

 private:
  QByteArray Bytes() {
    QJsonArray flat;
    EncodeTree(page_.document.tree().root(), flat);
    return QJsonDocument(flat).toJson(QJsonDocument::Compact);
  }

  // Plays what takes these steps back and returns the steps that did it.
  std::vector<TreeStep> Back(const std::vector<TreeStep>& steps) {
    live_.steps.clear();
    for (auto step = steps.rbegin(); step != steps.rend(); ++step) gateway().Play(Inverse(*step));
    return live_.steps;
  }

  // Problems that aren't the model's: an edit of a part may leave texts side by side, or empty.
  static bool OnlyTexts(const QString& problems) {
    for (const QString& problem : problems.split(u'\n', Qt::SkipEmptyParts))
      if (!problem.contains("text") && !problem.startsWith("live page")) return false;
    return true;
  }

  void StandEverywhere() {
    StandNowhere();
    const Node* const body = page_.document.tree().bodyNode();
    const auto stand = [&](const BoundaryPoint& point) {
      ranges_.push_back(std::make_unique<LiveRange>(LiveRange{point, point}));
      page_.document.tree().AddRange(ranges_.back().get());
    };
    for (const Node* node = body; node; node = NextInTree(node, body)) {
      for (int at = 0; node->IsText() && at <= node->Length(); ++at) stand(BoundaryPoint::InText(node, at));
      if (node->IsText()) continue;
      for (const Node* child = node->firstChild(); child; child = child->next()) stand(BoundaryPoint::Before(child));
      stand(BoundaryPoint::AtEnd(node));
    }
  }
  void StandNowhere() {
    for (const auto& range : ranges_) page_.document.tree().RemoveRange(range.get());
    ranges_.clear();
  }
  std::vector<Place> Places() const {
    std::vector<Place> places;
    for (const auto& range : ranges_) places.push_back(PlaceOf(range->start));
    return places;
  }
  // Whether every place that the change brought to one of its own is back.
  bool StandAgain(const std::vector<Place>& stood, const std::vector<Place>& moved) {
    std::map<Place, int> arrivals;
    for (const Place& place : moved) ++arrivals[place];
    const std::vector<Place> now = Places();
    for (std::size_t i = 0; i < stood.size(); ++i) {
      if (arrivals[moved[i]] != 1) continue;
      ++keptApart_;
      if (now[i] != stood[i]) return false;
    }
    return true;
  }

  TestPage page_;
  KeepingPage live_;
  std::vector<std::unique_ptr<LiveRange>> ranges_;
  std::set<int> kinds_;
  int keptApart_ = 0;  // number of places that were looked at
};

TEST(TreeStep, EachKindOfChangeCanBeTakenBack) {
  Reversal page("ab<b x=1 Y=2 z=3>c<i>d</i></b>efgh<p>ij</p><u></u>");
  const auto find = [&](const char* tag) { return page.page().Find(tag); };
  const auto text = [&](const char* data) { return page.page().Text(data); };
  EXPECT_EQ(page.Prove([&](Gateway& g) { g.ReplaceData(text("efgh"), 1, 2, "123"); }), "");
  EXPECT_EQ(page.Prove([&](Gateway& g) { g.SplitText(text("e123h"), 2); }), "");
  EXPECT_EQ(page.Prove([&](Gateway& g) { g.JoinWithNext(text("e1")); }), "");
  EXPECT_EQ(page.Prove([&](Gateway& g) { g.Insert(find("P"), text("ij"), TreeBuilder::Element(Known().br)); }), "");
  EXPECT_EQ(page.Prove([&](Gateway& g) { g.Remove(find("B")); }), "");
  page.gateway().Play(TreeStep(ReplaceStep{text("ij")->id(), 0, "", "k"}));
  EXPECT_EQ(
      page.Prove([&](Gateway& g) { g.Wrap(find("P"), find("U"), TreeBuilder::Element(Known().a, {{"n", "v"}})); }), "");
  EXPECT_EQ(page.Prove([&](Gateway& g) { g.Unwrap(find("P")); }), "");
  EXPECT_EQ(page.Prove([&](Gateway& g) { g.Unwrap(find("U")); }), "") << "an element without anything in it";
  EXPECT_EQ(page.kinds().size(), 7u);
  EXPECT_GT(page.keptApart(), 100);
}

TEST(TreeStep, AnAttributeComesBackInItsPlace) {
  Reversal page("<b x=1 y=2 z=3>c</b>");
  EXPECT_EQ(page.Prove([&](Gateway& g) { g.RemoveAttribute(page.page().Find("B"), "Y"); }), "");
  EXPECT_EQ(page.page().Body(), "<b x=\"1\" z=\"3\">c</b>");
  EXPECT_EQ(page.Prove([&](Gateway& g) { g.SetAttribute(page.page().Find("B"), "X", "5"); }), "");
  EXPECT_EQ(page.Prove([&](Gateway& g) { g.SetAttribute(page.page().Find("B"), "W", "7"); }), "");
  EXPECT_EQ(page.page().Body(), "<b x=\"5\" z=\"3\" w=\"7\">c</b>");
}

// What comes back is the node itself, so that those who refer to it go on.
TEST(TreeStep, WhatWasRemovedComesBackAsItself) {
  Reversal page("a<b>c</b>");
  const HTMLElement bold = page.page().Element("B");
  const NodeId number = bold.node()->id();
  EXPECT_EQ(page.Prove([&](Gateway& g) { g.Remove(bold.node()); }), "");
  EXPECT_FALSE(bold.node()->IsAttached());
  page.gateway().Play(InsertStep{page.page().document.tree().bodyNode()->id(), 0, number, NodeRef(bold.node())});
  EXPECT_EQ(page.page().Body(), "a<b>c</b>");
  EXPECT_EQ(page.page().Find("B"), bold.node());
  EXPECT_EQ(bold.sourceIndex(), 3);
}

class RandomChanges {
 public:
  explicit RandomChanges(unsigned seed)
      : random_(seed), page_("a<b x=1>b<i>c</i></b>de<p y=2 z=3>fgh<u>i</u></p>jkl") {}

  QString Step() {
    return page_.Prove([this](Gateway& gateway) { Change(gateway); });
  }

 private:
  int Below(int bound) { return int(random_() % unsigned(bound)); }

  const Node* Any(bool text) {
    std::vector<const Node*> nodes;
    const Node* const body = page_.page().document.tree().bodyNode();
    for (const Node* node = body->firstChild(); node; node = NextInTree(node, body))
      if (text ? node->IsText() : node->IsElement()) nodes.push_back(node);
    return nodes.empty() ? nullptr : nodes[std::size_t(Below(int(nodes.size())))];
  }

  void Change(Gateway& gateway) {
    const Node* const text = Any(true);
    const Node* const element = Any(false);
    switch (Below(10)) {
      case 0:
      case 1: {
        const Node* const parent = element ? element : page_.page().document.tree().bodyNode();
        Node* const fresh = TreeBuilder::Element(Known().b, {{"f", "1"}});
        TreeBuilder::Insert(fresh, TreeBuilder::Text("xyz"));
        return gateway.Insert(parent, Below(2) ? parent->firstChild() : nullptr, fresh);
      }
      case 2:
        if (const Node* const node = Below(2) ? text : element) gateway.Remove(node);
        return;
      case 3:
        if (!text) return;
        return gateway.ReplaceData(text, text->Length() / 2, Below(text->Length() - text->Length() / 2 + 1),
                                   QString(Below(3), u'n'));
      case 4:
      case 5:
        if (text && text->Length() > 1) gateway.SplitText(text, 1 + Below(text->Length() - 1));
        return;
      case 6:
        for (const Node* node = text; node; node = node->next())
          if (node->IsText() && node->next() && node->next()->IsText()) return gateway.JoinWithNext(node);
        return;
      case 7:
        if (const Node* const node = Below(2) ? text : element)
          gateway.Wrap(node, node->next() && Below(2) ? node->next() : node, TreeBuilder::Element(Known().font));
        return;
      case 8:
        if (!element) return;
        if (Below(2)) return gateway.SetAttribute(element, QString(QChar(u'w' + Below(4))), QString::number(Below(9)));
        return gateway.RemoveAttribute(element, QString(QChar(u'w' + Below(4))));
      default:
        if (element) gateway.Unwrap(element);
    }
  }

  std::mt19937 random_;
  Reversal page_;
};

TEST(TreeStep, RandomChangesCanBeTakenBack) {
  for (const unsigned seed : RandomSeeds("RandomChangesCanBeTakenBack", 12)) {
    RandomChanges changes(seed);
    for (int step = 0; step < 60; ++step) ASSERT_EQ(changes.Step(), "") << "seed " << seed << ", step " << step;
  }
}

}  // namespace
