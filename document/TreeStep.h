// One change of the tree as a value, by the numbers of its nodes: the Gateway plays it, the live page is told it,
// places are brought over it, and what takes it back is a step again. Places keep by the rules of the DOM standard for
// live ranges (https://www.w3.org/TR/dom/#concept-live-range). Where a text is cut or joined, or an element is put
// around something or taken away, they stay with what they stood at; a place in what is removed moves to where that
// was.
#pragma once

#include <optional>
#include <variant>
#include <vector>

#include "BoundaryPoint.h"

// A boundary point as the messages between model and live page name it.
struct NodePlace {
  NodeId container = 0;
  int rest = 0;  // in text the offset in UTF-16 units, elsewhere the child behind the place, 0 at the container's end

  static NodePlace Of(const BoundaryPoint& point);
  bool operator==(const NodePlace&) const = default;
};

// A `node` below is what the step puts in or takes out. It is kept by the step, as it was when it was taken out, so
// that it can come back as itself; a step that only moves places does without.

// Of a text or comment: `inserted` stands in place of `removed`.
struct ReplaceStep {
  NodeId text;
  int offset;  // in UTF-16 units
  QString removed, inserted;
};
struct SplitStep {
  NodeId text;
  int offset;
  NodeId rest;  // new, behind `text`: what stood behind the offset
  NodeRef node = {};
};
struct JoinStep {
  NodeId text;
  int length;  // of `text` before
  NodeId rest, parent;
  NodeRef node = {};
};
struct InsertStep {
  NodeId parent, before, top;
  NodeRef node = {};
};
struct RemoveStep {
  NodeId parent, next;
  std::vector<NodeId> nodes;  // in document order, so the one that is taken out is the first
  NodeRef node = {};
};
// Siblings go into an element that stands in their place, or come out of it. `children` may be empty when they come
// out.
struct WrapStep {
  NodeId parent, wrapper, next;  // what stands behind it
  std::vector<NodeId> children;
  NodeRef node = {};
};
struct UnwrapStep {
  NodeId parent, element, next;
  std::vector<NodeId> children;
  NodeRef node = {};
};
// No value is no attribute. `index` is its place among the element's attributes.
struct AttributeStep {
  NodeId element;
  int index;
  QString name;
  std::optional<QString> before, after;
};

using TreeStep =
    std::variant<ReplaceStep, SplitStep, JoinStep, InsertStep, RemoveStep, WrapStep, UnwrapStep, AttributeStep>;

// Brings a place of before the step up to date. Tells whether it has changed.
bool MovePlace(NodePlace& place, const TreeStep& step);

// The step that brings back what was before this one, which has been played.
TreeStep Inverse(const TreeStep& step);

// The step for once more, after it has been taken back: what it takes out may hold something else by now.
TreeStep Again(TreeStep step);

// Calls the overload that fits the step.
template <typename... Cases>
struct StepCases : Cases... {
  using Cases::operator()...;
};
template <typename... Cases>
StepCases(Cases...) -> StepCases<Cases...>;
