// Pointing at the page: where text goes, which element commands act on, and which element is selected as a whole.
#include "AsciiText.h"
#include "ElementKind.h"
#include "Program.h"
#include "Twips.h"
#include "WBUC.h"

namespace {

// The first direct child that is a FONT; one deeper down doesn't count.
HTMLElement FontOfCell(const HTMLElement& cell) {
  for (const Node* child = cell.node() ? cell.node()->firstChild() : nullptr; child; child = child->next())
    if (child->IsElement() && KindOf(HTMLElement(child)) == ElementKind::TextBlock) return HTMLElement(child);
  return {};
}

}  // namespace

void WBUC::SetCurrentElement(const HTMLElement& ObEl) {
  if (!ObEl) return;
  CurrentElement_ = ObEl;
  CurrentElementTag_ = UpperAscii(ObEl.tagName());
}

void WBUC::SetCurrentTextRange(std::shared_ptr<HTMLTxtRange> range) {
  CurrentTextRange_ = std::move(range);
  if (DocReady_) Doc_->TakeKeys(HasCurrentTextRange());
}

// A table is outlined then: where it is empty there is no text whose highlight would tell.
void WBUC::SetSelElement(const HTMLElement& element) {
  SelElement_ = element;
  if (DocReady_) Doc_->Outline(KindOf(element) == ElementKind::Table ? element : HTMLElement());
}

WBUC::Selection WBUC::IfSelection() const {
  if (SelElement_) return ElementSelected;
  if (!DocReady_ || Doc_->selection().type() != u"Text") return NothingSelected;
  const auto range = Doc_->selection().createRange();
  if (!range || range->compareEndPoints(QStringLiteral("StartToEnd"), *range) == 0) return NothingSelected;
  return range->text().isEmpty() ? NothingSelected : TextSelected;
}

void WBUC::SelectElementText(const HTMLElement& el) {
  const auto range = Body().createTextRange();
  if (range && range->moveToElementText(el)) range->select();
}

// Not if the user has selected something else since, or the element is gone.
bool WBUC::IsHighlighted(const HTMLElement& el) const {
  if (!el || Doc_->selection().type() != u"Text") return false;
  const auto whole = Body().createTextRange();
  if (!whole || !whole->moveToElementText(el)) return false;
  const auto selected = Doc_->selection().createRange();
  return selected && selected->compareEndPoints(QStringLiteral("StartToStart"), *whole) == 0 &&
         selected->compareEndPoints(QStringLiteral("EndToEnd"), *whole) == 0;
}

void WBUC::SelectAsElement(const HTMLElement& el) {
  SelectElementText(el);
  CurrentElement_ = el;
  SetSelElement(el);
}

void WBUC::ClearSelection() {
  if (DocReady_) Doc_->selection().empty();
}

QPoint WBUC::PlaceTextRange() {
  const auto range = Body().createTextRange();
  if (!range) return {-1, -1};
  range->moveToPoint(Event().clientX(), Event().clientY());
  SetCurrentTextRange(range);
  const QPoint position(range->offsetLeft().value_or(0), range->offsetTop().value_or(0));
  keyPresses_.SetPosition(position);
  return {PixelsToTwips(position.x()), PixelsToTwips(position.y())};
}

// Not gated on a document being ready. With another button nothing changes, so that a right click keeps the selection.
void WBUC::Doc_onmousedown() {
  if (Event().button() != 1) return;
  keyPresses_.Flush();
  history_.EndRun();
  CurrentElement_ = {};
  SetSelElement({});
  SetCurrentTextRange(nullptr);
  CurrentElementTag_.clear();
}

bool WBUC::Doc_onclick() {
  if (!DocReady_) return false;
  const int mouseX = PixelsToTwips(Event().clientX());
  const int mouseY = PixelsToTwips(Event().clientY());
  const HTMLElement source = Event().srcElement();
  CurrentElementTag_ = UpperAscii(source.tagName());
  QString tag = CurrentElementTag_;
  QPoint range(-1, -1);
  switch (KindOf(tag)) {
    case ElementKind::TextBlock:
    case ElementKind::TextPart:
    case ElementKind::Link:
      range = PlaceTextRange();
      CurrentElement_ = source;
      break;
    case ElementKind::Picture:
    case ElementKind::Table:
    case ElementKind::Row:
      SetCurrentTextRange(nullptr);
      CurrentElement_ = source;
      break;
    case ElementKind::Cell:
      if (const HTMLElement font = FontOfCell(source)) {
        range = PlaceTextRange();
        CurrentElement_ = font;
        CurrentElementTag_ = tag = QStringLiteral("FONT");
      }
      break;
    case ElementKind::Page:
      range = PlaceTextRange();
      CurrentElement_ = {};
      break;
    case ElementKind::None:
      tag.clear();  // CurrentElementTag keeps the real tag
      break;
  }
  emit Click(tag, mouseX, mouseY, range.x(), range.y());
  return false;
}

bool WBUC::Doc_ondblclick() {
  if (!DocReady_) return false;
  const HTMLElement source = Event().srcElement();
  CurrentElementTag_ = UpperAscii(source.tagName());
  switch (KindOf(CurrentElementTag_)) {
    case ElementKind::Picture:
    case ElementKind::TextBlock:
    case ElementKind::Table:
      SetCurrentTextRange(nullptr);
      SelectAsElement(source);
      break;
    case ElementKind::TextPart:
      // The insertion point stays in force: typing still goes in although the caret bar is hidden.
      if (const HTMLElement parent = source.parentElement(); KindOf(parent) == ElementKind::TextBlock) {
        SelectAsElement(parent);
        CurrentElementTag_ = QStringLiteral("FONT");
      }
      break;
    case ElementKind::Row:
    case ElementKind::Cell:
      if (const HTMLElement table = TableAround(source)) {
        SelectAsElement(table);  // here too the insertion point stays
        CurrentElementTag_ = QStringLiteral("TABLE");
      }
      // Not whether a table was found, but what is current by now; no event at all otherwise.
      if (KindOf(CurrentElement_) != ElementKind::Table) return false;
      break;
    case ElementKind::Page:
      if (const auto range = Doc_->selection().createRange()) {
        range->move(QStringLiteral("textedit"), 1);
        SetCurrentTextRange(range);
      }
      CurrentElement_ = {};
      SetSelElement({});
      break;
    case ElementKind::Link:
    case ElementKind::None:
      break;
  }
  emit DoubleClick(CurrentElementTag_);
  return false;
}

void WBUC::Doc_onmouseup() {
  if (!program_.Compat4On && Event().button() == 2) emit RightClick();
}

bool WBUC::Doc_oncontextmenu() {
  return false;
}

void WBUC::Doc_onmouseover() {
  emit ElementHover(Event().srcElement().tagName());
}

void WBUC::Doc_onmouseout() {
  emit ElementHover(QString());
}
