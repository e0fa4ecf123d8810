// Changing the elements of the page: cut, copy, paste, delete, move, replace, add.
// All of it works by HTML text: an element is taken out as a string and put in again as a string elsewhere. What was
// there before is stale then, and doing something with a stale element does nothing.
#include <QClipboard>
#include <QGuiApplication>

#include "ElementKind.h"
#include "WBUC.h"

namespace {

const QString character = QStringLiteral("character");
const QString beforeBegin = QStringLiteral("BeforeBegin");
const QString beforeEnd = QStringLiteral("BeforeEnd");
const QString afterEnd = QStringLiteral("AfterEnd");

// How many elements on, of any kind, a neighbour to change places with is looked for.
constexpr int stepsToNeighbour = 10;

}  // namespace

// An element goes to the clipboard with its tags; CurrentElement stays behind, stale.
void WBUC::Cut() {
  const auto step = UndoStep(QStringLiteral("Cut"));
  switch (IfSelection()) {
    case NothingSelected:
      break;
    case TextSelected:
      if (const auto range = Doc_->selection().createRange()) {
        TextClip_ = range->htmlText();
        range->pasteHTML(QString());
      }
      break;
    case ElementSelected:
      TagClip_ = SelElement_.outerHTML();
      SelElement_.setOuterHTML(QString());
      SetSelElement({});
      break;
  }
}

// Unlike Cut it takes what is highlighted at this moment for an element too, and keeps SelElement.
void WBUC::Copy() {
  const Selection kind = IfSelection();
  if (kind == NothingSelected || !DocReady_) return;
  const auto range = Doc_->selection().createRange();
  if (!range) return;
  (kind == TextSelected ? TextClip_ : TagClip_) = range->htmlText();
}

void WBUC::Paste(int iOrigin) {
  if (!DocReady_) return;
  const auto step = UndoStep(QStringLiteral("Paste"));
  SetSelElement({});
  if (iOrigin == FromTagClip) {
    if (!TagClip_.isEmpty()) {
      if (CurrentElement_) {
        CurrentElement_.insertAdjacentHTML(afterEnd, TagClip_);
      } else {
        AddNewElement(TagClip_);
      }
    }
    ClearSelection();
    return;
  }
  if (iOrigin != FromTextClip && iOrigin != FromSystem) return;
  // The system's text is taken as HTML, too: a "<" in it starts a tag.
  const QString html = iOrigin == FromTextClip ? TextClip_ : QGuiApplication::clipboard()->text();
  if (html.isEmpty()) return;
  if (!CurrentTextRange_) return AddNewElement(html);
  if (CurrentTextRange_->compareEndPoints(QStringLiteral("StartToEnd"), *CurrentTextRange_) != -1)
    CurrentTextRange_->move(character, 0);
  CurrentTextRange_->pasteHTML(html);
}

void WBUC::DeleteElement(const HTMLElement& ObSel) {
  ReplaceElemHTML(ObSel, QString());
}

void WBUC::ReplaceElemHTML(const HTMLElement& Element1, const QString& sNewText) {
  if (!Element1) return;
  const auto range = Body().createTextRange();
  if (!range || !range->moveToElementText(Element1)) return;
  const auto step = UndoStep(sNewText.isEmpty() ? QStringLiteral("Delete") : QStringLiteral("Replace"));
  range->select();
  range->pasteHTML(sNewText);
}

void WBUC::AddNewElement(const QString& sText) {
  const auto step = UndoStep(QStringLiteral("Add Element"));
  Body().insertAdjacentHTML(beforeEnd, sText);
}

// One row with one cell at the end of the page, wherever the insertion point is. The cell holds a text block to click
// into. Numbers go without quotes.
void WBUC::AddTable(const QString& sWide, const QString& sHigh, const QString& sBorder, const QString& sColor,
                    const QString& sHPos, const QString& sTDHPos, const QString& sTDVPos, const QString& sPadding) {
  const QString html = QStringLiteral("<TABLE ALIGN=\"") + sHPos + QStringLiteral("\" WIDTH=") + sWide +
                       QStringLiteral(" HEIGHT=") + sHigh + QStringLiteral(" BORDER=") + sBorder +
                       QStringLiteral(" BGCOLOR=\"") + sColor + QStringLiteral("\" CELLPADDING=") + sPadding +
                       QStringLiteral("><TR><TD ALIGN=\"") + sTDHPos + QStringLiteral("\" VALIGN=\"") + sTDVPos +
                       QStringLiteral("\"><FONT FACE=\"") + values_.BodyFontName + QStringLiteral("\" SIZE=") +
                       values_.BodyFontSize + QStringLiteral(" COLOR=\"") + values_.BodyFontColor +
                       QStringLiteral("\">&nbsp;</FONT></TD></TR></TABLE>");
  const auto step = UndoStep(QStringLiteral("Add Table"));
  Body().insertAdjacentHTML(beforeEnd, html);
}

void WBUC::CreateLinkSel(const QString& sURL) {
  if (!DocReady_ || Doc_->selection().type() != u"Text") return;
  const auto step = UndoStep(QStringLiteral("Add Link"));
  if (const auto range = Doc_->selection().createRange()) range->execCommand(QStringLiteral("CreateLink"), false, sURL);
}

// The neighbour is the nearest text block or picture in the order of the page. One that lies inside the element goes
// out with it, and one around it takes it before itself.
int WBUC::MoveElementOneElement(int iDirection) {
  if (!SelElement_) return NoElementSelected;
  if (!IsMovable(KindOf(SelElement_))) return NotMovable;
  const int start = SelElement_.sourceIndex();
  HTMLElement neighbour;
  for (int step = 1; step <= stepsToNeighbour && !neighbour; ++step) {
    const HTMLElement other = Doc_->all().item(start + step * iDirection);
    if (!other) break;
    if (IsMovable(KindOf(other))) neighbour = other;
  }
  if (!neighbour) return NoNeighbour;
  const auto step = UndoStep(QStringLiteral("Move"));
  const QString html = SelElement_.outerHTML();
  ReplaceElemHTML(SelElement_, QString());
  neighbour.insertAdjacentHTML(iDirection == -1 ? beforeBegin : afterEnd, html);
  SetSelElement({});
  return Moved;
}

// Room in a page is made of no-break spaces and line breaks, so moving back takes away only what moving on puts there.
void WBUC::MoveElementOneSpace(int iDirection) {
  if (!CurrentElement_ || !DocReady_) return;
  const auto step = UndoStep(QStringLiteral("Move"));
  const bool isHighlighted = IsHighlighted(SelElement_);
  switch (iDirection) {
    case 0: {
      const auto range = Body().createTextRange();
      if (!range || !range->moveToElementText(CurrentElement_)) return;
      range->move(character, -1);
      range->moveEnd(character, 1);
      if (range->htmlText() == u"&nbsp;") range->pasteHTML(QString());
      break;
    }
    case 1: {
      HTMLElement before = Doc_->all().item(CurrentElement_.sourceIndex() - 1);
      if (before && before.tagName() == u"BR") before.setOuterHTML(QString());
      break;
    }
    case 2:
      CurrentElement_.insertAdjacentHTML(beforeBegin, QStringLiteral("&nbsp;"));
      break;
    case 3:
      CurrentElement_.insertAdjacentHTML(beforeBegin, QStringLiteral("<BR>"));
      break;
    default:
      return;
  }
  // What was put before the element would take part of the highlight.
  if (isHighlighted) SelectElementText(SelElement_);
}
