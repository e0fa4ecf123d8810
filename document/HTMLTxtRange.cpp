#include "HTMLTxtRange.h"

#include "FormatCommands.h"
#include "HTMLDocument.h"
#include "HtmlParser.h"
#include "RangeEdit.h"
#include "Serializer.h"
#include "TextWalker.h"
#include "TreeBuilder.h"

BoundaryPoint WithinBody(const PageTree& tree, const BoundaryPoint& point) {
  const Node* const body = tree.bodyNode();
  if (!body || body->Contains(point.container)) return point;
  const BoundaryPoint start = BoundaryPoint::AtStart(body);
  return ComparePoints(tree.order(), point, start) < 0 ? start : BoundaryPoint::AtEnd(body);
}

HTMLTxtRange::HTMLTxtRange(HTMLDocument& document, const LiveRange& range)
    : document_(document.Alive()), range_(range) {
  document.tree().AddRange(&range_);
}

HTMLTxtRange::~HTMLTxtRange() {
  if (HTMLDocument* doc = document()) doc->tree().RemoveRange(&range_);
}

HTMLDocument* HTMLTxtRange::document() const {
  const auto alive = document_.lock();
  return alive ? *alive : nullptr;
}

void HTMLTxtRange::SetRange(const LiveRange& range) {
  range_ = range;
}

QString HTMLTxtRange::text() const {
  return document() ? TextBetween(range_) : QString();
}

void HTMLTxtRange::setText(const QString& text) {
  HTMLDocument* const doc = document();
  if (!doc) return;
  DeleteContent(doc->gateway(), range_);
  if (text.isEmpty()) return;
  const BoundaryPoint end = InsertNodes(doc->gateway(), range_.start, {TreeBuilder::Text(text)});
  range_ = {end, end};
}

QString HTMLTxtRange::htmlText() const {
  HTMLDocument* const doc = document();
  if (!doc || !SpansContent(range_)) return {};
  return RangeHtml(range_, doc->tree().scripting());
}

void HTMLTxtRange::pasteHTML(const QString& html) {
  HTMLDocument* const doc = document();
  if (!doc) return;
  DeleteContent(doc->gateway(), range_);
  if (html.isEmpty()) return;  // of which HTML would make a HEAD and a BODY
  const std::vector<Node*> nodes = ParseFragment(html, range_.start.container);
  if (nodes.empty()) return;
  const BoundaryPoint end = InsertNodes(doc->gateway(), range_.start, nodes);
  range_ = {end, end};
}

void HTMLTxtRange::move(const QString& unit, int count) {
  const auto at = Moved(count > 0 ? range_.end : range_.start, unit, count);
  if (at) range_ = {*at, *at};
}

void HTMLTxtRange::moveEnd(const QString& unit, int count) {
  const auto at = Moved(range_.end, unit, count);
  if (!at) return;
  range_.end = *at;
  if (ComparePoints(document()->tree().order(), range_.end, range_.start) < 0) range_.start = range_.end;
}

std::optional<BoundaryPoint> HTMLTxtRange::Moved(const BoundaryPoint& from, const QString& unit, int count) const {
  HTMLDocument* const doc = document();
  const Node* const body = doc ? doc->tree().bodyNode() : nullptr;
  if (!body) return std::nullopt;
  BoundaryPoint at = WithinBody(doc->tree(), from);
  if (unit.compare(u"textedit", Qt::CaseInsensitive) == 0) {
    if (count != 0) at = count > 0 ? EndOfText(body) : BoundaryPoint::AtStart(body);
  } else if (unit.compare(u"character", Qt::CaseInsensitive) == 0) {
    for (int step = 0; step < std::abs(count); ++step) {
      const auto next = count > 0 ? StepForward(at, body) : StepBackward(at, body);
      if (!next) break;
      at = *next;
    }
  }
  return at;
}

bool HTMLTxtRange::moveToElementText(const HTMLElement& element) {
  const Node* const node = element.node();
  if (!document() || !node || !node->IsAttached() || node->tree() != &document()->tree()) return false;
  if (node->tag() == Known().body || node->tag() == Known().html || !node->parent()) {
    range_ = {BoundaryPoint::AtStart(node), BoundaryPoint::AtEnd(node)};
  } else {
    range_ = {BoundaryPoint::Before(node), BoundaryPoint::Behind(node)};
  }
  return true;
}

void HTMLTxtRange::moveToPoint(int x, int y) {
  HTMLDocument* const doc = document();
  const Node* const body = doc ? doc->tree().bodyNode() : nullptr;
  if (!body) return;
  const HTMLEventObj& event = doc->parentWindow().event();
  BoundaryPoint at = BoundaryPoint::AtEnd(body);
  position_.reset();
  if (event.clientX() == x && event.clientY() == y && event.caret() && body->Contains(event.caret().container)) {
    at = event.caret();
    position_ = event.caretPosition();
  }
  range_ = {at, at};
}

void HTMLTxtRange::select() {
  if (HTMLDocument* doc = document()) doc->selection().Select(range_);
}

std::shared_ptr<HTMLTxtRange> HTMLTxtRange::duplicate() const {
  HTMLDocument* const doc = document();
  return doc ? std::make_shared<HTMLTxtRange>(*doc, range_) : nullptr;
}

int HTMLTxtRange::compareEndPoints(const QString& how, const HTMLTxtRange& other) const {
  HTMLDocument* const doc = document();
  if (!doc || other.document() != doc) return 0;
  const BoundaryPoint& mine = how.startsWith(QLatin1String("End"), Qt::CaseInsensitive) ? range_.end : range_.start;
  const BoundaryPoint& theirs =
      how.endsWith(QLatin1String("End"), Qt::CaseInsensitive) ? other.range_.end : other.range_.start;
  const int order = ComparePoints(doc->tree().order(), mine, theirs);
  return order < 0 ? -1 : order > 0 ? 1 : 0;
}

bool HTMLTxtRange::execCommand(const QString& name, bool, const QString& value) {
  HTMLDocument* const doc = document();
  if (!doc || !ExecCommand(doc->gateway(), range_, name, value)) return false;
  select();
  return true;
}

QString HTMLTxtRange::queryCommandValue(const QString& name) const {
  const HTMLDocument* const doc = document();
  return doc ? QueryCommandValue(doc->tree(), range_.start, name) : QString();
}

void HTMLTxtRange::Measure(std::function<void()> done) {
  HTMLDocument* const doc = document();
  if (!doc || !doc->tree().page()) return done();
  doc->tree().page()->Measure(range_.start, [self = weak_from_this(), done](std::optional<QPoint> position) {
    if (const auto range = self.lock(); range && position) range->position_ = position;
    done();
  });
}
