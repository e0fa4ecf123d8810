// A place between two characters or two nodes of the page: the boundary point of the DOM standard.
// In text it is the text node and an offset in UTF-16 units. Elsewhere it is the container and the child that follows,
// not a child's index, so that it costs the same in an element with ten children and with ten thousand.
#pragma once

#include "Node.h"

class TreeOrder;

struct BoundaryPoint {
  const Node* container = nullptr;  // null: no point
  int offset = 0;                   // in text only
  const Node* before = nullptr;     // elsewhere: the child behind the point, null at the container's end

  static BoundaryPoint InText(const Node* text, int offset) { return {text, offset, nullptr}; }
  static BoundaryPoint AtStart(const Node* container) {
    return container->IsText() ? InText(container, 0) : BoundaryPoint{container, 0, container->firstChild()};
  }
  static BoundaryPoint AtEnd(const Node* container) {
    return container->IsText() ? InText(container, container->Length()) : BoundaryPoint{container, 0, nullptr};
  }
  static BoundaryPoint Before(const Node* node) { return {node->parent(), 0, node}; }
  static BoundaryPoint Behind(const Node* node) { return {node->parent(), 0, node->next()}; }

  bool IsInText() const { return container && container->IsText(); }
  explicit operator bool() const { return container != nullptr; }
  bool operator==(const BoundaryPoint&) const = default;

  // The offset of the DOM standard: UTF-16 units in text, else the number of children before the point.
  int DomOffset() const;
};

// Below 0 when `a` stands before `b`, 0 when they are the same point, above 0 otherwise. Both in the same tree.
int ComparePoints(const TreeOrder& order, const BoundaryPoint& a, const BoundaryPoint& b);

// The first node that lies wholly or partly behind `point`; null at the end of the document.
const Node* NodeBehind(const BoundaryPoint& point);

// A pair of points that keeps its place while the tree changes, by the rules for live ranges of the DOM standard.
// The tree of the page moves the points; see PageTree::AddRange.
struct LiveRange {
  BoundaryPoint start;
  BoundaryPoint end;
  bool IsCollapsed() const { return start == end; }
};
