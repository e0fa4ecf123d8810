// One change of the tree as a value, by the numbers of its nodes: what becomes of a place through it.
// Places keep by the rules of the DOM standard for live ranges. Where a text is cut or joined, or an element is put
// around something or taken away, they stay with what they stood at; a place in what is removed moves to where that
// was.
#pragma once

#include <variant>
#include <vector>

#include "Node.h"

// A boundary point as the messages between model and live page name it.
struct NodePlace {
  NodeId container = 0;
  int rest = 0;  // in text the offset in UTF-16 units, elsewhere the child behind the place, 0 at the container's end

  bool operator==(const NodePlace&) const = default;
};

struct ReplaceStep {
  NodeId text;                // or comment
  int offset, count, length;  // `length` units stand in place of `count`
};
struct SplitStep {
  NodeId text;
  int offset;
  NodeId rest;  // new, behind `text`: what stood behind the offset
};
struct JoinStep {
  NodeId text;
  int length;  // of `text` before
  NodeId rest, parent;
};
struct InsertStep {
  NodeId parent, before, node;
};
struct RemoveStep {
  NodeId parent, next;
  std::vector<NodeId> nodes;  // in document order, so the one that was taken out is the first
};
struct WrapStep {
  NodeId parent, wrapper;
  std::vector<NodeId> children;
};
struct UnwrapStep {
  NodeId parent, element;
  NodeId first, next;  // its first child, 0 if it was empty; what stood behind it
};

using TreeStep = std::variant<ReplaceStep, SplitStep, JoinStep, InsertStep, RemoveStep, WrapStep, UnwrapStep>;

// Brings a place of before the step up to date. Tells whether it has changed.
bool MovePlace(NodePlace& place, const TreeStep& step);
