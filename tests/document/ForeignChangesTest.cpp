#include "ForeignChanges.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <random>

#include "QtPrinters.h"
#include "RandomSeed.h"
#include "TestPage.h"

namespace {

class Foreign : public testing::Test {
 protected:
  int Id(const QString& tag, int index = 0) { return page.Find(tag, index)->id(); }
  int Id(const Node* node) { return node->id(); }
  using Lists = std::initializer_list<QJsonArray>;
  static QJsonArray Join(Lists lists) {
    QJsonArray joined;
    for (const QJsonArray& list : lists) joined.append(list);
    return joined;
  }
  void Apply(Lists children, Lists attributes = {}, Lists data = {}) {
    QJsonObject changes;
    changes["children"] = Join(children);
    changes["attributes"] = Join(attributes);
    changes["data"] = Join(data);
    ApplyForeignChanges(page.document.gateway(), changes);
    EXPECT_EQ(ProblemsOf(page.document, true), QStringList());
  }
  static QJsonArray Element(int id, const char* name, const QJsonArray& children = {}, int count = 0) {
    QJsonArray tree{1, id, name, 0, count};
    for (const QJsonValue& value : children) tree.append(value);
    return tree;
  }

  TestPage page{"<p>a<b>b^b^</b></p><div><i>c</i></div>"};
  std::shared_ptr<HTMLTxtRange> range = page.Range();
  HTMLElement bold = page.Element("B");
};

TEST_F(Foreign, AMovedNodeKeepsItsIdentity) {
  Apply({QJsonArray{Id("P"), Id(page.Text("a"))}, QJsonArray{Id("DIV"), Id("B"), Id("I")}});
  EXPECT_EQ(page.Body(), "<p>a</p><div><b>bb</b><i>c</i></div>");
  EXPECT_EQ(bold.parentElement().tagName(), "DIV");
  EXPECT_EQ(bold.node(), page.Find("B"));
}

TEST_F(Foreign, ChildrenInANewOrder) {
  Apply({QJsonArray{Id("BODY"), Id("DIV"), Id("P")}});
  EXPECT_EQ(page.Body(), "<div><i>c</i></div><p>a<b>bb</b></p>");
  EXPECT_EQ(page.Show(range->range()).count(u'^') > 0, true);
}

TEST_F(Foreign, ParentAndChildChangePlaces) {
  Apply({QJsonArray{Id("BODY"), Id("P"), Id("I")}, QJsonArray{Id("I"), Id("DIV")}, QJsonArray{Id("DIV")}});
  EXPECT_EQ(page.Body(), "<p>a<b>bb</b></p><i><div></div></i>");
}

TEST_F(Foreign, ANewSubtreeAroundAKnownNode) {
  Apply({QJsonArray{Id("P"), Id(page.Text("a")),
                    Element(900, "u", Element(Id("B"), "b", QJsonArray{3, 901, "new"}, 1), 1)}});
  EXPECT_EQ(page.Body(), "<p>a<u><b>new</b></u></p><div><i>c</i></div>");
  EXPECT_EQ(bold.parentElement().tagName(), "U");
  EXPECT_EQ(page.document.tree().FindNode(900), page.Find("U"));
}

TEST_F(Foreign, ANewSubtreeInAParentThatMoves) {
  Apply({QJsonArray{Id("BODY"), Id("DIV")}, QJsonArray{Id("DIV"), Id("P"), Id("I")},
         QJsonArray{Id("P"), Element(902, "u"), Id("B")}});
  EXPECT_EQ(page.Body(), "<div><p><u></u><b>bb</b></p><i>c</i></div>");
}

TEST_F(Foreign, WhatIsTakenOutGoesWithAllInside) {
  Apply({QJsonArray{Id("BODY"), Id("DIV")}});
  EXPECT_EQ(page.Body(), "<div><i>c</i></div>");
  EXPECT_EQ(bold.outerHTML(), "<b>bb</b>");
  EXPECT_EQ(bold.sourceIndex(), -1);
  EXPECT_EQ(page.Show(range->range()), "^<div><i>c</i></div>");
}

TEST_F(Foreign, OnlyThePartOfATextThatDiffersIsReplaced) {
  const Node* const text = page.Text("bb");
  Apply({}, {}, {QJsonArray{Id(text), "xbb"}});
  EXPECT_EQ(page.Show(range->range()), "<p>a<b>xb^b^</b></p><div><i>c</i></div>");
  Apply({}, {}, {QJsonArray{Id(text), "xbbx"}});
  EXPECT_EQ(page.Show(range->range()), "<p>a<b>xb^b^x</b></p><div><i>c</i></div>");
  Apply({}, {}, {QJsonArray{Id(text), "xb"}});
  EXPECT_EQ(page.Show(range->range()), "<p>a<b>xb^</b></p><div><i>c</i></div>");
}

TEST_F(Foreign, Attributes) {
  Apply({}, {QJsonArray{Id("B"), "id", "n", "title", "t"}});
  EXPECT_EQ(bold.outerHTML(), "<b id=\"n\" title=\"t\">bb</b>");
  Apply({}, {QJsonArray{Id("B")}});
  EXPECT_EQ(bold.outerHTML(), "<b>bb</b>");
}

TEST_F(Foreign, NonsenseIsPassedOver) {
  const QString before = page.Body();
  const int root = page.document.tree().root()->id();
  Apply({QJsonArray{}, QJsonArray{123456, 1}, QJsonArray{"x"}, QJsonArray{Id(page.Text("a")), Id("B")}});
  Apply({}, {QJsonArray{Id(page.Text("a")), "x", "y"}, QJsonArray{}},
        {QJsonArray{Id("B"), "z"}, QJsonArray{root, "z"}});
  EXPECT_EQ(page.Body(), before);
  Apply({QJsonArray{Id("B"), Id(page.Text("bb")), Id("B"), Id("P"), Id("BODY"), root, 0, -2147483647 - 1}});
  EXPECT_EQ(page.Body(), before) << "nothing can stand inside itself";
  Apply({QJsonArray{Id("B"), Id(page.Text("bb")), QJsonArray{1, 5}, QJsonArray{}, QJsonArray{3, 2147483647, "x"}}});
  EXPECT_EQ(page.Body(), before);
  Apply({QJsonArray{Id("DIV"), Id("I"), Id("I"), Element(Id("I"), "i"), Element(Id("DIV"), "div")}});
  EXPECT_EQ(page.Text("bb")->parent(), bold.node());
}

TEST(ForeignChanges, RandomListsLeaveASoundDocument) {
  for (const unsigned seed : RandomSeeds("RandomListsLeaveASoundDocument", 300)) {
    std::mt19937 random(seed);
    TestPage page("a<b>b<i>c</i></b><p>d<u>e</u><template>t</template></p><table><tr><td>^x</table>");
    const auto range = page.Range();
    std::vector<HTMLElement> held;
    int fresh = 1000;
    for (int step = 0; step < 20; ++step) {
      std::vector<const Node*> nodes;
      for (const Node* node = page.document.tree().bodyNode(); node;
           node = NextInTree(node, page.document.tree().bodyNode()))
        nodes.push_back(node);
      if (nodes.empty()) break;  // BODY itself has gone
      const auto any = [&] { return nodes[random() % nodes.size()]->id(); };
      QJsonArray lists;
      for (int count = int(random() % 4); count > 0; --count) {
        QJsonArray list{any()};
        for (int children = int(random() % 4); children > 0; --children) {
          if (random() % 4) {
            list.append(any());
          } else {
            list.append(QJsonArray{1, random() % 2 ? any() : fresh++, "s", 0, 2, 3, fresh++, "n", 1, any(), "q", 0, 0});
          }
        }
        lists.append(list);
      }
      HTMLElement element = page.document.all().item(int(random() % unsigned(page.document.all().length())));
      if (random() % 2) held.push_back(element);
      QJsonObject changes;
      changes["children"] = lists;
      ApplyForeignChanges(page.document.gateway(), changes);
      ASSERT_EQ(ProblemsOf(page.document, true), QStringList()) << "seed " << seed << ", step " << step;
    }
  }
}

}  // namespace
