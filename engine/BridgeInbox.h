// What the live page names, found in the model as it is now: the program may have changed it since.
#pragma once

#include "BridgeMessages.h"
#include "PageTree.h"
#include "PlaceHistory.h"

class BridgeInbox {
 public:
  BridgeInbox(const PageTree& tree, const PlaceHistory& history) : tree_(tree), history_(history) {}

  // None for what the model has never heard of.
  BoundaryPoint PointOf(const Bridge::Places& places) const;
  const Node* NodeOf(const std::vector<NodeId>& names) const;

  // Without points where there is no selection, or where its ends have passed each other.
  LiveRange RangeOf(const Bridge::Selection& selection) const;

  // What a handler may ask, in pixels of the view.
  HTMLEventObj EventOf(const Bridge::EventMessage& message, double zoom) const;

 private:
  const PageTree& tree_;
  const PlaceHistory& history_;
};
