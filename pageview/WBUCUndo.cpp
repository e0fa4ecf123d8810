// Undo: what the user has in hand, kept beside each command and taken up again.
#include <algorithm>

#include "WBUC.h"

namespace {

std::optional<EditState::Stretch> StretchOf(const LiveRange& range) {
  if (!range.start) return std::nullopt;
  return EditState::Stretch{NodePlace::Of(range.start), NodePlace::Of(range.end)};
}

// A script may have changed what stood around the place.
BoundaryPoint PointAt(const PageTree& tree, const NodePlace& place) {
  const Node* const container = tree.FindNode(place.container);
  if (!container) return {};
  if (container->IsText()) return BoundaryPoint::InText(container, std::clamp(place.rest, 0, container->Length()));
  const Node* const before = place.rest ? tree.FindNode(place.rest) : nullptr;
  return {container, 0, before && before->parent() == container ? before : nullptr};
}

LiveRange RangeAt(const PageTree& tree, const std::optional<EditState::Stretch>& stretch) {
  if (!stretch) return {};
  const LiveRange range{PointAt(tree, stretch->start), PointAt(tree, stretch->end)};
  const bool isWhole = range.start && range.end && ComparePoints(tree.order(), range.start, range.end) <= 0;
  return isWhole ? range : LiveRange();
}

}  // namespace

void WBUC::Undo() {
  keyPresses_.Flush();
  history_.Undo();
}

void WBUC::Redo() {
  keyPresses_.Flush();
  history_.Redo();
}

EditState WBUC::StateOfEditing() const {
  EditState state;
  if (CurrentTextRange_) state.insertionPoint = StretchOf(CurrentTextRange_->range());
  state.selection = StretchOf(Doc_->selection().range());
  state.currentElement = CurrentElement_;
  state.selectedElement = SelElement_;
  state.currentTag = CurrentElementTag_;
  state.values = values_;
  return state;
}

void WBUC::Restore(const EditState& state) {
  const PageTree& tree = Doc_->tree();
  CurrentElement_ = state.currentElement;
  SetSelElement(state.selectedElement);
  CurrentElementTag_ = state.currentTag;
  values_ = state.values;
  const LiveRange point = RangeAt(tree, state.insertionPoint);
  SetCurrentTextRange(point.start ? std::make_shared<HTMLTxtRange>(*Doc_, point) : nullptr);
  const LiveRange selection = RangeAt(tree, state.selection);
  if (selection.start) {
    Doc_->selection().Select(selection);
  } else {
    Doc_->selection().empty();
  }
  TellInsertionPoint();
}

// As a key does, but without one.
void WBUC::TellInsertionPoint() {
  if (CurrentTextRange_) keyPresses_.Push(QString(), CurrentTextRange_);
}
