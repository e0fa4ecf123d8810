// What the program has changed in the page of late, batch by batch, for places that the page named before it had
// carried that out: brings them to where they are now.
#pragma once

#include <deque>

#include "TreeStep.h"

class PlaceHistory {
 public:
  // The next step in order, which is part of this batch.
  void Add(int batch, const TreeStep& step);

  // The page has carried out all batches up to this one, and names no place of before it any more.
  void Forget(int batch);
  void Clear() { entries_.clear(); }
  bool IsEmpty() const { return entries_.empty(); }

  // Where a place is now that the page named before all that is kept here.
  NodePlace Now(NodePlace place) const;

  // The same for a node: itself, or what it was taken out of.
  NodeId Now(NodeId node) const;

 private:
  struct Entry {
    int batch;
    TreeStep step;
  };
  std::deque<Entry> entries_;
};
