#include "HTMLSelectionObject.h"

#include "HTMLDocument.h"
#include "HTMLTxtRange.h"
#include "LivePage.h"

HTMLSelectionObject::HTMLSelectionObject(HTMLDocument& document) : document_(document) {
  document_.tree().AddRange(&range_);
}

HTMLSelectionObject::~HTMLSelectionObject() {
  document_.tree().RemoveRange(&range_);
}

QString HTMLSelectionObject::type() const {
  return range_.start && !range_.IsCollapsed() ? QStringLiteral("Text") : QStringLiteral("None");
}

std::shared_ptr<HTMLTxtRange> HTMLSelectionObject::createRange() {
  const Node* const body = document_.tree().bodyNode();
  if (!body) return nullptr;
  LiveRange range = range_;
  // A script of the page may have selected the whole document.
  if (range.start) range = {WithinBody(document_.tree(), range.start), WithinBody(document_.tree(), range.end)};
  if (!range.start) range = {BoundaryPoint::AtStart(body), BoundaryPoint::AtStart(body)};
  return std::make_shared<HTMLTxtRange>(document_, range);
}

void HTMLSelectionObject::empty() {
  range_ = {};
  if (document_.tree().page()) document_.tree().page()->ShowSelection(nullptr);
}

void HTMLSelectionObject::Select(const LiveRange& range) {
  range_ = range;
  if (document_.tree().page()) document_.tree().page()->ShowSelection(&range_);
}
