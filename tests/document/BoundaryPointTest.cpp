#include "BoundaryPoint.h"

#include <gtest/gtest.h>

#include <random>

#include "TestPage.h"

namespace {

// Position of a point by the definition of the DOM standard, from the path of indices down to it.
int SlowCompare(const BoundaryPoint& a, const BoundaryPoint& b) {
  const auto path = [](const BoundaryPoint& point) {
    std::vector<int> indices{point.DomOffset()};
    for (const Node* node = point.container; node->parent(); node = node->parent())
      indices.insert(indices.begin(), node->Index());
    return indices;
  };
  const std::vector<int> left = path(a);
  const std::vector<int> right = path(b);
  for (std::size_t level = 0; level < std::min(left.size(), right.size()); ++level) {
    const bool leftEnds = level + 1 == left.size();
    const bool rightEnds = level + 1 == right.size();
    if (left[level] != right[level]) return left[level] < right[level] ? -1 : 1;
    // The same number: as an offset it stands before the child of that index, and so before what is inside it.
    if (leftEnds != rightEnds) return leftEnds ? -1 : 1;
  }
  return 0;
}

TEST(BoundaryPoint, ComparesLikeTheDefinition) {
  const char* const pages[] = {"", "ab<b>c<i></i></b>d<p><u>e</u></p>", "<b><i><u>x</u></i></b>",
                               "<b></b><b></b><!--c-->y", "<table><tr><td>a<td></table>\n"};
  for (const char* html : pages) {
    const TestPage page(QString::fromLatin1(html));
    std::vector<BoundaryPoint> points;
    for (const Node* node = page.document.tree().root(); node; node = NextInTree(node)) {
      if (node->IsText()) {
        for (int at = 0; at <= node->Length(); ++at) points.push_back(BoundaryPoint::InText(node, at));
        continue;
      }
      for (const Node* child = node->firstChild(); child; child = child->next())
        points.push_back(BoundaryPoint::Before(child));
      points.push_back(BoundaryPoint::AtEnd(node));
    }
    for (const BoundaryPoint& a : points)
      for (const BoundaryPoint& b : points) {
        const int order = ComparePoints(page.document.tree().order(), a, b);
        ASSERT_EQ(order < 0   ? -1
                  : order > 0 ? 1
                              : 0,
                  SlowCompare(a, b))
            << page.Show(a).toStdString() << " against " << page.Show(b).toStdString();
      }
  }
}

TEST(BoundaryPoint, EndsOfContainers) {
  const TestPage page("a<b>cd</b>");
  const Node* const bold = page.Find("B");
  EXPECT_EQ(BoundaryPoint::Behind(bold), BoundaryPoint::AtEnd(page.document.tree().bodyNode()));
  EXPECT_EQ(BoundaryPoint::AtEnd(bold).DomOffset(), 1);
  EXPECT_EQ(BoundaryPoint::AtEnd(bold->firstChild()).DomOffset(), 2);
  EXPECT_EQ(NodeBehind(BoundaryPoint::AtStart(bold)), bold->firstChild());
  EXPECT_EQ(NodeBehind(BoundaryPoint::AtEnd(bold)), nullptr);
}

}  // namespace
