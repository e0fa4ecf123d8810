// What a command on a stretch of text has to go through: the longest runs of siblings that it can treat as one.
#pragma once

#include <functional>
#include <vector>

#include "BoundaryPoint.h"

class Gateway;
class PageTree;

// Two points that keep their place while they exist.
class TrackedRange {
 public:
  TrackedRange(const PageTree& tree, const LiveRange& range);
  ~TrackedRange();
  TrackedRange(const TrackedRange&) = delete;
  TrackedRange& operator=(const TrackedRange&) = delete;

  const LiveRange& operator*() const { return range_; }
  const LiveRange* operator->() const { return &range_; }

 private:
  const PageTree& tree_;
  LiveRange range_;
};

// Siblings from `first` to `last`; a single one is an element that is taken for itself.
struct Run {
  const Node* first;
  const Node* last;
  bool single;
};

enum class Taking {
  Join,    // part of a run with its neighbours
  Single,  // a run for itself
  Enter,   // what is inside decides
  Skip     // left alone
};

// How a node is taken. Asked only of texts, comments and elements that lie wholly in the stretch.
using Classifier = std::function<Taking(const Node*)>;

// The runs between two points that are not inside of texts, in document order. Elements that lie in it in part are
// entered. White space at the ends of a run that doesn't show is left out, and so are runs without anything to show.
std::vector<Run> CollectRuns(const LiveRange& between, const Classifier& classify);

// Every text between the points that shows.
std::vector<const Node*> ShownTexts(const LiveRange& between);

// Cuts the texts in which the range begins and ends and tells the stretch between the cuts, with its points as far
// outside as they can be without taking in more that shows.
LiveRange CutOut(Gateway& gateway, LiveRange& range);

// Whether there is something to see in the node: text, a line break, a picture or another thing of its own.
bool ShowsSomething(const Node* root);

// Whether a block or an element that `isObstacle` is the node itself or inside of it.
bool Holds(const Node* node, const std::function<bool(const Node*)>& isObstacle);

// Whether the node may be part of a run: a text of the page's body, a comment, an element that is no block.
bool IsInline(const Node* node);
