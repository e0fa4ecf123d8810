// The page that the user sees, as the document model knows it: it is told every change and asked for rectangles.
// Nothing is ever asked of it that has to be waited for.
#pragma once

#include <QPoint>
#include <functional>
#include <optional>

#include "BoundaryPoint.h"
#include "TreeStep.h"

class LivePage {
 public:
  virtual ~LivePage() = default;

  // The program has changed the model by this step; called once for each, in order, after it. Nodes that were put in
  // are in the tree, those that were taken out still hold what was in them.
  virtual void Changed(const TreeStep& step) = 0;

  // Shows the text between the points as the visible selection; without points there is none.
  virtual void ShowSelection(const LiveRange* range) = 0;

  // Whether released keys go into the page's text, so that the space bar must not scroll.
  virtual void TakesKeys(bool on) = 0;

  // Draws a line round an element, on screen only; null for none. A highlight of its text may show nothing.
  virtual void Outline(const Node* element) = 0;

  // Left and top of the point in the view, in whole pixels; nothing when the page has no layout or doesn't answer.
  // Where the program has just changed the page, the point is brought into view. The answer may come at once, and comes
  // exactly once unless the page goes away.
  using Answer = std::function<void(std::optional<QPoint>)>;
  virtual void Measure(const BoundaryPoint& point, Answer answer) = 0;
};
