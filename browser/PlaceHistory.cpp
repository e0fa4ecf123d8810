#include "PlaceHistory.h"

#include <limits>

void PlaceHistory::Add(int batch, const TreeStep& step) {
  entries_.push_back({batch, step});
}

void PlaceHistory::Forget(int applied) {
  while (!entries_.empty() && entries_.front().batch <= applied) entries_.pop_front();
}

NodePlace PlaceHistory::Now(NodePlace place, int applied) const {
  for (const Entry& entry : entries_)
    if (entry.batch > applied) MovePlace(place, entry.step);
  return place;
}

NodeId PlaceHistory::Now(NodeId node, int applied) const {
  // A place in it that no step can take for one before a child, nor for one in a text.
  constexpr int nowhere = std::numeric_limits<int>::min();
  for (const Entry& entry : entries_) {
    NodePlace place{node, nowhere};
    if (entry.batch > applied) MovePlace(place, entry.step);
    node = place.container;
  }
  return node;
}
