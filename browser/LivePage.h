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

  // The model has been changed by the program; called once for each change, in order, after it.
  virtual void Inserted(const Node* subtree) = 0;
  virtual void Removed(const Node* parent, NodeId node) = 0;
  virtual void AttributeSet(const Node* element, const QString& name, const QString& value) = 0;
  virtual void AttributeRemoved(const Node* element, const QString& name) = 0;
  virtual void Wrapped(const Node* wrapper) = 0;  // siblings have been put into a new element in their place
  // `first` to `last`, which were inside, stand in its place; null when it was empty.
  virtual void Unwrapped(NodeId element, const Node* parent, const Node* first, const Node* last) = 0;
  virtual void DataReplaced(const Node* text, int offset, int count, const QString& data) = 0;

  // The same change as far as it moves places, before it is told; attributes move none. Of use to a page that may name
  // places of before it has heard of the change.
  virtual void PlacesMoved(const TreeStep&) {}

  // Shows the text between the points as the visible selection; without points there is none.
  virtual void ShowSelection(const LiveRange* range) = 0;

  // Whether released keys go into the page's text, so that the space bar must not scroll.
  virtual void TakesKeys(bool on) = 0;

  // Left and top of the point in the view, in whole pixels; nothing when the page has no layout or doesn't answer.
  // The answer may come at once, and comes exactly once unless the page goes away.
  using Answer = std::function<void(std::optional<QPoint>)>;
  virtual void Measure(const BoundaryPoint& point, Answer answer) = 0;
};
