// Pointing at the page: where text goes, which element commands act on, and which element is selected as a whole.
#include "AsciiText.h"
#include "Program.h"
#include "Twips.h"
#include "WBUC.h"

namespace {

// How far up the table of a cell or row is looked for.
constexpr int stepsToTable = 3;

enum class ClickRule { Nothing, Text, Element, Cell, Page };

struct ClickRow {
  const char16_t* tag;
  ClickRule rule;
};

// Every other tag is something that the editor doesn't treat as an element at all; P, DIV and their like among them.
constexpr ClickRow clickRows[] = {
    {u"FONT", ClickRule::Text},     {u"B", ClickRule::Text},      {u"A", ClickRule::Text},
    {u"STRONG", ClickRule::Text},   {u"IMG", ClickRule::Element}, {u"TR", ClickRule::Element},
    {u"TABLE", ClickRule::Element}, {u"TD", ClickRule::Cell},     {u"BODY", ClickRule::Page},
};

ClickRule RuleOf(const QString& tag) {
  for (const ClickRow& row : clickRows)
    if (tag == QStringView(row.tag)) return row.rule;
  return ClickRule::Nothing;
}

// The first direct child that is a FONT; one deeper down doesn't count.
HTMLElement FontOfCell(const HTMLElement& cell) {
  const HTMLElementCollection children = cell.children();
  for (int i = 0; i < children.length(); ++i)
    if (children.item(i).tagName() == u"FONT") return children.item(i);
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

WBUC::Selection WBUC::IfSelection() const {
  if (SelElement_) return ElementSelected;
  if (!DocReady_ || Doc_->selection().type() != u"Text") return NothingSelected;
  const auto range = Doc_->selection().createRange();
  if (!range || range->compareEndPoints(QStringLiteral("StartToEnd"), *range) == 0) return NothingSelected;
  return range->text().isEmpty() ? NothingSelected : TextSelected;
}

void WBUC::SelectElementText(const HTMLElement& el) {
  const auto range = Body_.createTextRange();
  if (!range) return;
  range->moveToElementText(el);
  range->select();
}

void WBUC::SelectAsElement(const HTMLElement& el) {
  SelectElementText(el);
  CurrentElement_ = el;
  SelElement_ = el;
}

void WBUC::ClearSelection() {
  if (DocReady_) Doc_->selection().empty();
}

QPoint WBUC::PlaceTextRange() {
  const auto range = Body_.createTextRange();
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
  CurrentElement_ = {};
  SelElement_ = {};
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
  switch (RuleOf(tag)) {
    case ClickRule::Text:
      range = PlaceTextRange();
      CurrentElement_ = source;
      break;
    case ClickRule::Element:
      SetCurrentTextRange(nullptr);
      CurrentElement_ = source;
      break;
    case ClickRule::Cell:
      if (const HTMLElement font = FontOfCell(source)) {
        range = PlaceTextRange();
        CurrentElement_ = font;
        CurrentElementTag_ = tag = QStringLiteral("FONT");
      }
      break;
    case ClickRule::Page:
      range = PlaceTextRange();
      CurrentElement_ = {};
      break;
    case ClickRule::Nothing:
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
  const QString tag = CurrentElementTag_;
  if (tag == u"IMG" || tag == u"FONT" || tag == u"TABLE") {
    SetCurrentTextRange(nullptr);
    SelectAsElement(source);
  } else if (tag == u"B" || tag == u"STRONG") {
    // The insertion point stays in force: typing still goes in although the caret bar is hidden.
    const HTMLElement parent = source.parentElement();
    if (parent && parent.tagName() == u"FONT") {
      SelectAsElement(parent);
      CurrentElementTag_ = QStringLiteral("FONT");
    }
  } else if (tag == u"TR" || tag == u"TD") {
    HTMLElement up = source;
    for (int step = 0; step < stepsToTable && up; ++step) {
      up = up.parentElement();
      if (!up || up.tagName() != u"TABLE") continue;
      SelectAsElement(up);  // here too the insertion point stays
      CurrentElementTag_ = QStringLiteral("TABLE");
      break;
    }
    if (CurrentElement_.tagName() != u"TABLE") return false;  // no event at all
  } else if (tag == u"BODY") {
    if (const auto range = Doc_->selection().createRange()) {
      range->move(QStringLiteral("textedit"), 1);
      SetCurrentTextRange(range);
    }
    CurrentElement_ = {};
    SelElement_ = {};
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
