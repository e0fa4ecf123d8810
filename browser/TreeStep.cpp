#include "TreeStep.h"

#include <algorithm>

namespace {

bool Contains(const std::vector<NodeId>& ids, NodeId id) {
  return std::find(ids.begin(), ids.end(), id) != ids.end();
}

// What a place becomes; the same when the step doesn't touch it.
struct Mover {
  NodePlace place;

  NodePlace operator()(const ReplaceStep& step) const {
    if (place.container != step.text || place.rest <= step.offset) return place;
    if (place.rest <= step.offset + step.count) return {step.text, step.offset};
    return {step.text, place.rest + step.length - step.count};
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
    return place == NodePlace{step.parent, step.before} ? NodePlace{step.parent, step.node} : place;
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
    if (place == NodePlace{step.parent, step.element}) return {step.parent, step.first ? step.first : step.next};
    return place;
  }
};

}  // namespace

bool MovePlace(NodePlace& place, const TreeStep& step) {
  const NodePlace moved = std::visit(Mover{place}, step);
  return std::exchange(place, moved) != moved;
}
