#include "RangeEdit.h"

#include <algorithm>
#include <cassert>
#include <iterator>

#include "Gateway.h"
#include "TextWalker.h"

namespace {

void JoinAround(Gateway& gateway, const BoundaryPoint& seam) {
  const Node* left = nullptr;
  const Node* right = nullptr;
  if (seam.IsInText()) {
    left = seam.offset == 0 ? seam.container->previous() : seam.container;
    right = left ? left->next() : nullptr;
  } else {
    right = seam.before;
    left = right ? right->previous() : nullptr;
  }
  if (left && right && left->IsText() && right->IsText()) gateway.JoinWithNext(left);
}

void CutText(Gateway& gateway, const Node* text, int from, int to) {
  if (from == 0 && to == text->Length()) {
    gateway.Remove(text);
  } else {
    gateway.ReplaceData(text, from, to - from, {});
  }
}

// What gives a table its form. The walk of a deletion meets these only where the TABLE around them isn't removed.
bool IsFormOfTable(const Node* node) {
  if (!node->IsElement() || node->tag() == Known().table) return false;
  static const Tag* const cells[] = {Known().td, Tag::Of(QStringLiteral("th")), Tag::Of(QStringLiteral("caption")),
                                     Tag::Of(QStringLiteral("colgroup")), Tag::Of(QStringLiteral("col"))};
  return node->tag()->isTablePart || std::find(std::begin(cells), std::end(cells), node->tag()) != std::end(cells);
}

bool IsTablePart(const Node* node) {
  return node->IsElement() && node->tag()->isTablePart;
}

}  // namespace

void DeleteContent(Gateway& gateway, LiveRange& range) {
  if (range.IsCollapsed()) return;
  if (SpansContent(range)) {
    const Node* const first = range.start.container;
    const Node* const last = range.end.container;
    if (first == last && first->IsText()) {
      CutText(gateway, first, range.start.offset, range.end.offset);
    } else {
      // Cells and rows go only where the range was set round them as a whole.
      const bool keepsForm = !IsTablePart(first) || !IsTablePart(last);
      const Node* const stop = last->IsText() ? last : NodeBehind(range.end);
      const int lastOffset = range.end.offset;
      const Node* node = NodeBehind(range.start);
      if (first->IsText()) {
        node = NextSkippingChildren(first);
        CutText(gateway, first, range.start.offset, first->Length());
      }
      while (node && node != stop) {
        if (node->tag() == Known().head) {  // a page keeps its HEAD and BODY
          node = NextSkippingChildren(node);
          continue;
        }
        if (node->Contains(last) || node->tag() == Known().body || (keepsForm && IsFormOfTable(node))) {
          node = NextInTree(node);
          continue;
        }
        const Node* const following = NextSkippingChildren(node);
        gateway.Remove(node);
        node = following;
      }
      if (last->IsText()) CutText(gateway, last, 0, lastOffset);
    }
  }
  range.end = range.start;
  JoinAround(gateway, range.start);
}

BoundaryPoint InsertNodes(Gateway& gateway, const BoundaryPoint& at, const std::vector<Node*>& nodes) {
  assert(at.container);
  if (nodes.empty()) return at;

  if (nodes.size() == 1 && nodes.front()->IsText()) {
    const Node* host = at.IsInText() ? at.container : nullptr;
    int offset = at.offset;
    if (!host) {
      const Node* const left = at.before ? at.before->previous() : at.container->lastChild();
      if (left && left->IsText()) {
        host = left;
        offset = left->Length();
      } else if (at.before && at.before->IsText()) {
        host = at.before;
        offset = 0;
      }
    }
    if (!host) {
      gateway.Insert(at.container, at.before, nodes.front());
      return BoundaryPoint::AtEnd(nodes.front());
    }
    const int length = nodes.front()->Length();
    gateway.ReplaceData(host, offset, 0, nodes.front()->data());
    DestroyTree(nodes.front());
    return BoundaryPoint::InText(host, offset + length);
  }

  const Node* parent = at.container;
  const Node* before = at.before;
  if (at.IsInText()) {
    parent = at.container->parent();
    if (at.offset == 0) {
      before = at.container;
    } else {
      before = at.offset < at.container->Length() ? gateway.SplitText(at.container, at.offset) : at.container->next();
    }
  }
  auto from = nodes.begin();
  auto to = nodes.end();
  const Node* const left = before ? before->previous() : parent->lastChild();
  if ((*from)->IsText() && left && left->IsText()) {
    gateway.ReplaceData(left, left->Length(), 0, (*from)->data());
    DestroyTree(*from++);
  }
  const bool joinsRight = nodes.back()->IsText() && before && before->IsText();
  if (joinsRight) --to;
  for (auto it = from; it != to; ++it) gateway.Insert(parent, before, *it);
  Node* const last = nodes.back();
  if (!joinsRight) return last->IsText() ? BoundaryPoint::AtEnd(last) : BoundaryPoint::Behind(last);
  const int length = last->Length();
  gateway.ReplaceData(before, 0, 0, last->data());
  DestroyTree(last);
  return BoundaryPoint::InText(before, length);
}

void RemoveNode(Gateway& gateway, const Node* node) {
  const BoundaryPoint seam{node->parent(), 0, node->next()};
  gateway.Remove(node);
  JoinAround(gateway, seam);
}
