#include "BoundaryPoint.h"

#include "TreeOrder.h"

int BoundaryPoint::DomOffset() const {
  if (container->IsText()) return offset;
  if (before) return before->Index();
  return container->lastChild() ? container->lastChild()->Index() + 1 : 0;
}

const Node* NodeBehind(const BoundaryPoint& point) {
  if (point.container->IsText()) return point.container;
  return point.before ? point.before : NextSkippingChildren(point.container);
}

int ComparePoints(const TreeOrder& order, const BoundaryPoint& a, const BoundaryPoint& b) {
  if (a == b) return 0;
  if (a.container == b.container && a.container->IsText()) return a.offset - b.offset;
  const Node* const behindA = NodeBehind(a);
  const Node* const behindB = NodeBehind(b);
  if (behindA != behindB) {
    if (!behindA || !behindB) return behindA ? -1 : 1;
    return order.IsBefore(behindA, behindB) ? -1 : 1;
  }
  // The same node follows. A point in front of a text comes before the points inside it; of several ends of
  // containers that close one after the other the innermost comes first.
  if (a.container->IsText() != b.container->IsText()) return a.container->IsText() ? 1 : -1;
  return b.container->Depth() - a.container->Depth();
}
