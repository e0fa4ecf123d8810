#include "FormatRuns.h"

#include <unordered_set>

#include "Gateway.h"
#include "TextWalker.h"

namespace {

bool IsAtomic(const Node* node) {
  return node->IsElement() && (node->tag()->isAtomic || node->tag() == Known().br);
}

bool IsHidden(const Node* node) {
  return !node->IsText() && (!node->IsElement() || node->tag()->isHidden);
}

bool ShowsTextOrPicture(const Run& run) {
  for (const Node* top = run.first; top; top = top == run.last ? nullptr : top->next()) {
    for (const Node* node = top; node;) {
      if (node->IsText() ? ShowsOnPage(node) : node->IsElement() && node->tag()->isAtomic) return true;
      node = IsHidden(node) || IsAtomic(node) ? NextSkippingChildren(node, top) : NextInTree(node, top);
    }
  }
  return false;
}

bool NothingShowsBefore(const BoundaryPoint& point) {
  const Node* node = point.before ? point.before->previous() : point.container->lastChild();
  while (node && !ShowsSomething(node)) node = node->previous();
  return !node;
}

bool NothingShowsBehind(const BoundaryPoint& point) {
  const Node* node = point.before;
  while (node && !ShowsSomething(node)) node = node->next();
  return !node;
}

// Moves the points out of elements of which the stretch has nothing that shows.
void Narrow(LiveRange& span) {
  while (!span.start.container->Contains(span.end.container) && NothingShowsBehind(span.start))
    span.start = BoundaryPoint::Behind(span.start.container);
  while (!span.end.container->Contains(span.start.container) && NothingShowsBefore(span.end))
    span.end = BoundaryPoint::Before(span.end.container);
}

// Moves the points out of elements that the stretch covers, and never out of BODY.
void Widen(LiveRange& span, const Node* body) {
  while (true) {
    const Node* const first = span.start.container;
    const Node* const last = span.end.container;
    if (!body || !body->Contains(first) || !body->Contains(last)) return;
    const bool atStart = first != body && NothingShowsBefore(span.start);
    const bool atEnd = last != body && NothingShowsBehind(span.end);
    if (first == last && atStart && atEnd) {
      span = {BoundaryPoint::Before(first), BoundaryPoint::Behind(first)};
    } else if (atStart && !first->Contains(last)) {
      span.start = BoundaryPoint::Before(first);
    } else if (atEnd && !last->Contains(first)) {
      span.end = BoundaryPoint::Behind(last);
    } else {
      return;
    }
  }
}

BoundaryPoint OutOfText(const BoundaryPoint& point) {
  if (!point.IsInText()) return point;
  return point.offset == 0 ? BoundaryPoint::Before(point.container) : BoundaryPoint::Behind(point.container);
}

// Goes through the nodes between two points; `visit` gets each and whether it lies wholly in between, and tells
// whether what is inside comes next.
template <typename Visit>
void Walk(const LiveRange& between, Visit visit) {
  std::unordered_set<const Node*> around;  // that end behind the end
  for (const Node* node = between.end.container; node; node = node->parent()) around.insert(node);
  const Node* const stop = NodeBehind(between.end);
  for (const Node* node = NodeBehind(between.start); node && node != stop;)
    node = visit(node, !around.contains(node)) ? NextInTree(node) : NextSkippingChildren(node);
}

void Trim(Run& run) {
  while (run.first != run.last && !ShowsSomething(run.first)) run.first = run.first->next();
  while (run.last != run.first && !ShowsSomething(run.last)) run.last = run.last->previous();
}

}  // namespace

bool ShowsSomething(const Node* root) {
  for (const Node* node = root; node;) {
    if (node->IsText() ? ShowsOnPage(node) : IsAtomic(node)) return true;
    node = IsHidden(node) ? NextSkippingChildren(node, root) : NextInTree(node, root);
  }
  return false;
}

TrackedRange::TrackedRange(const PageTree& tree, const LiveRange& range) : tree_(tree), range_(range) {
  tree_.AddRange(&range_);
}

TrackedRange::~TrackedRange() {
  tree_.RemoveRange(&range_);
}

std::vector<Run> CollectRuns(const LiveRange& between, const Classifier& classify) {
  std::vector<Run> runs;
  bool open = false;  // the last run may go on
  Walk(between, [&](const Node* node, bool covered) {
    const Taking taking = covered ? classify(node) : Taking::Enter;
    if (taking == Taking::Join) {
      if (open && runs.back().last->next() == node) {
        runs.back().last = node;
      } else {
        runs.push_back({node, node, false});
      }
      open = true;
      return false;
    }
    open = false;
    if (taking == Taking::Single) runs.push_back({node, node, true});
    return taking == Taking::Enter;
  });
  std::erase_if(runs, [](const Run& run) { return !run.single && !ShowsTextOrPicture(run); });
  for (Run& run : runs)
    if (!run.single) Trim(run);
  return runs;
}

std::vector<const Node*> ShownTexts(const LiveRange& between) {
  std::vector<const Node*> texts;
  Walk(between, [&](const Node* node, bool) {
    if (node->IsText() && IsInline(node) && ShowsOnPage(node)) texts.push_back(node);
    return !IsHidden(node) && !IsAtomic(node);
  });
  return texts;
}

LiveRange CutOut(Gateway& gateway, LiveRange& range) {
  const auto isInside = [](const BoundaryPoint& point) {
    return point.IsInText() && point.offset > 0 && point.offset < point.container->Length();
  };
  if (isInside(range.end)) gateway.SplitText(range.end.container, range.end.offset);
  if (isInside(range.start)) {
    const bool same = range.end.container == range.start.container;
    const int length = range.end.offset - range.start.offset;
    const Node* const rest = gateway.SplitText(range.start.container, range.start.offset);
    range.start = BoundaryPoint::InText(rest, 0);
    if (same) range.end = BoundaryPoint::InText(rest, length);
  }
  LiveRange span{OutOfText(range.start), OutOfText(range.end)};
  Narrow(span);
  // Over nothing but edges the points may have passed each other.
  if (ComparePoints(gateway.tree().order(), span.start, span.end) >= 0) return {span.start, span.start};
  Widen(span, gateway.tree().bodyNode());
  return span;
}

bool Holds(const Node* root, const std::function<bool(const Node*)>& isObstacle) {
  for (const Node* node = root; node; node = NextInTree(node, root))
    if (node->IsElement() && (node->tag()->isBlock || isObstacle(node))) return true;
  return false;
}

bool IsInline(const Node* node) {
  const Tag* const around = node->parent()->tag();
  if (around && (around->isTablePart || around->isAtomic || around->isHidden || around->isRawText)) return false;
  return !node->IsElement() || !node->tag()->isBlock;
}
