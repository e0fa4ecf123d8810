#include "TreeStep.h"

#include <algorithm>

namespace {

bool Contains(const std::vector<NodeId>& ids, NodeId id) {
  return std::find(ids.begin(), ids.end(), id) != ids.end();
}

NodeId FirstOf(const std::vector<NodeId>& ids, NodeId otherwise) {
  return ids.empty() ? otherwise : ids.front();
}

std::vector<NodeId> IdsOf(const NodeRef& top) {
  std::vector<NodeId> ids;
  for (const Node* node = top.get(); node; node = NextInTree(node, top.get())) ids.push_back(node->id());
  return ids;
}

// What a place becomes; the same when the step doesn't touch it.
struct Mover {
  NodePlace place;

  NodePlace operator()(const ReplaceStep& step) const {
    if (place.container != step.text || place.rest <= step.offset) return place;
    const int removed = int(step.removed.size());
    if (place.rest <= step.offset + removed) return {step.text, step.offset};
    return {step.text, place.rest + int(step.inserted.size()) - removed};
  }

  NodePlace operator()(const SplitStep& step) const {
    if (place.container != step.text || place.rest <= step.offset) return place;
    return {step.rest, place.rest - step.offset};
  }

  NodePlace operator()(const JoinStep& step) const {
    if (place.container == step.rest) return {step.text, step.length + place.rest};
    if (place == NodePlace{step.parent, step.rest}) return {step.text, step.length};
    return place;
  }

  // A place exactly where something is inserted stays before it.
  NodePlace operator()(const InsertStep& step) const {
    return place == NodePlace{step.parent, step.before} ? NodePlace{step.parent, step.top} : place;
  }

  NodePlace operator()(const RemoveStep& step) const {
    const bool stoodBefore = place == NodePlace{step.parent, step.nodes.front()};
    return stoodBefore || Contains(step.nodes, place.container) ? NodePlace{step.parent, step.next} : place;
  }

  NodePlace operator()(const WrapStep& step) const {
    if (place.container != step.parent || !Contains(step.children, place.rest)) return place;
    return place.rest == step.children.front() ? NodePlace{step.parent, step.wrapper}
                                               : NodePlace{step.wrapper, place.rest};
  }

  NodePlace operator()(const UnwrapStep& step) const {
    if (place.container == step.element) return {step.parent, place.rest ? place.rest : step.next};
    if (place == NodePlace{step.parent, step.element}) return {step.parent, FirstOf(step.children, step.next)};
    return place;
  }

  NodePlace operator()(const AttributeStep&) const { return place; }
};

}  // namespace

NodePlace NodePlace::Of(const BoundaryPoint& point) {
  return {point.container->id(), point.IsInText() ? point.offset : point.before ? point.before->id() : 0};
}

bool MovePlace(NodePlace& place, const TreeStep& step) {
  const NodePlace moved = std::visit(Mover{place}, step);
  return std::exchange(place, moved) != moved;
}

TreeStep Inverse(const TreeStep& step) {
  return std::visit(
      StepCases{
          [](const ReplaceStep& s) -> TreeStep { return ReplaceStep{s.text, s.offset, s.inserted, s.removed}; },
          [](const SplitStep& s) -> TreeStep {
            return JoinStep{s.text, s.offset, s.rest, s.node->parent()->id(), s.node};
          },
          [](const JoinStep& s) -> TreeStep { return SplitStep{s.text, s.length, s.rest, s.node}; },
          [](const InsertStep& s) -> TreeStep { return RemoveStep{s.parent, s.before, IdsOf(s.node), s.node}; },
          [](const RemoveStep& s) -> TreeStep { return InsertStep{s.parent, s.next, s.nodes.front(), s.node}; },
          [](const WrapStep& s) -> TreeStep { return UnwrapStep{s.parent, s.wrapper, s.next, s.children, s.node}; },
          [](const UnwrapStep& s) -> TreeStep { return WrapStep{s.parent, s.element, s.next, s.children, s.node}; },
          [](const AttributeStep& s) -> TreeStep {
            return AttributeStep{s.element, s.index, s.name, s.after, s.before};
          }},
      step);
}

TreeStep Again(TreeStep step) {
  if (auto* const remove = std::get_if<RemoveStep>(&step)) remove->nodes = IdsOf(remove->node);
  return step;
}
