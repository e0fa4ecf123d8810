#include "PlaceHistory.h"

#include <limits>

void PlaceHistory::Add(int batch, const TreeStep& step) {
  entries_.push_back({batch, step});
  // Places move without the nodes, which need not stay for that.
  std::visit(
      [](auto& one) {
        if constexpr (requires { one.node; }) one.node = {};
      },
      entries_.back().step);
}

void PlaceHistory::Forget(int batch) {
  while (!entries_.empty() && entries_.front().batch <= batch) entries_.pop_front();
}

NodePlace PlaceHistory::Now(NodePlace place) const {
  for (const Entry& entry : entries_) MovePlace(place, entry.step);
  return place;
}

NodeId PlaceHistory::Now(NodeId node) const {
  // A place in it that no step can take for one before a child, nor for one in a text.
  constexpr int nowhere = std::numeric_limits<int>::min();
  for (const Entry& entry : entries_) {
    NodePlace place{node, nowhere};
    MovePlace(place, entry.step);
    node = place.container;
  }
  return node;
}
