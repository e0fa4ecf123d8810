#include "BridgeInbox.h"

#include <algorithm>
#include <cmath>

namespace {

// 1 left, 2 right, 4 middle.
int OldButton(int button) {
  constexpr int numbers[] = {1, 4, 2};
  return button >= 0 && button < 3 ? numbers[button] : 0;
}

}  // namespace

BoundaryPoint BridgeInbox::PointOf(const Bridge::Places& places) const {
  for (const NodePlace& named : places) {
    const NodePlace now = history_.Now(named);
    const Node* const container = tree_.FindNode(now.container);
    if (!container) continue;
    if (container->IsText()) return BoundaryPoint::InText(container, std::clamp(now.rest, 0, container->Length()));
    const Node* const before = now.rest ? tree_.FindNode(now.rest) : nullptr;
    const bool fits = now.rest == 0 || (before && before->parent() == container);
    if (fits || &named == &places.back()) return {container, 0, fits ? before : nullptr};
  }
  return {};
}

const Node* BridgeInbox::NodeOf(const std::vector<NodeId>& names) const {
  for (const NodeId id : names)
    if (const Node* const found = tree_.FindNode(history_.Now(id))) return found;
  return nullptr;
}

LiveRange BridgeInbox::RangeOf(const Bridge::Selection& selection) const {
  if (!selection.range) return {};
  const LiveRange range{PointOf(selection.range->first), PointOf(selection.range->second)};
  if (!range.start || !range.end || ComparePoints(tree_.order(), range.start, range.end) > 0) return {};
  return range;
}

HTMLEventObj BridgeInbox::EventOf(const Bridge::EventMessage& message, double zoom) const {
  const auto pixels = [zoom](double value) { return int(std::nearbyint(value * zoom)); };
  const BoundaryPoint caret = PointOf(message.caret);
  // The element under the mouse: that around the text which was hit, if it was, else the one that was named.
  const Node* target = nullptr;
  if (message.onText && caret.IsInText()) {
    target = caret.container->parent();
  } else {
    target = NodeOf(message.target);
  }
  if (target && !target->IsElement()) target = nullptr;
  HTMLEventObj event(message.type);
  event.At(pixels(message.client.x()), pixels(message.client.y()))
      .On(HTMLElement(target))
      .Key(message.keyCode, message.shift);
  if (message.type != EventType::KeyUp) event.Button(OldButton(message.button));
  if (caret) event.Caret(caret, QPoint(pixels(message.caretPosition.x()), pixels(message.caretPosition.y())));
  return event;
}
