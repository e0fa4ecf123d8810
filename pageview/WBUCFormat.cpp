// The font of the selected text, and what the font controls show of the insertion point.
#include "WBUC.h"

namespace {

bool IsCollapsed(const HTMLTxtRange& range) {
  return range.compareEndPoints(QStringLiteral("StartToEnd"), range) == 0;
}

}  // namespace

// A result isn't asked for: a command that fails has changed nothing.
void WBUC::FormatSelection(const QString& command, const QString& value, const QString& name) {
  if (!DocReady_ || IfSelection() != TextSelected) return;
  const auto step = UndoStep(name);
  if (const auto range = Doc_->selection().createRange()) range->execCommand(command, false, value);
}

void WBUC::SetSelColor(const QString& color) {
  FormatSelection(QStringLiteral("ForeColor"), color, QStringLiteral("Text Color"));
}
void WBUC::SetSelBackColor(const QString& color) {
  FormatSelection(QStringLiteral("BackColor"), color, QStringLiteral("Text Back Color"));
}
void WBUC::SetSelFontFace(const QString& face) {
  FormatSelection(QStringLiteral("FontName"), face, QStringLiteral("Font"));
}
void WBUC::SetSelFontSize(const QString& size) {
  FormatSelection(QStringLiteral("FontSize"), size, QStringLiteral("Font Size"));
}
void WBUC::ToggleBold() {
  FormatSelection(QStringLiteral("Bold"), QString(), QStringLiteral("Bold"));
}

// Asks what is selected in the page, not CurrentTextRange.
std::array<QString, 5> WBUC::CurFontProps() const {
  std::array<QString, 5> font;
  const auto range = DocReady_ ? Doc_->selection().createRange() : nullptr;
  if (!range || !IsCollapsed(*range)) return font;
  font[0] = range->queryCommandValue(QStringLiteral("ForeColor"));
  font[1] = range->queryCommandValue(QStringLiteral("FontName"));
  font[2] = range->queryCommandValue(QStringLiteral("Fontsize"));
  font[3] = range->queryCommandValue(QStringLiteral("BackColor"));
  font[4] = QStringLiteral("*");
  return font;
}

QString WBUC::SelText() const {
  if (!DocReady_ || Doc_->selection().type() != u"Text") return {};
  const auto range = Doc_->selection().createRange();
  return range && !IsCollapsed(*range) ? range->text() : QString();
}

void WBUC::SetSelText(const QString& sNewText) {
  if (!DocReady_ || Doc_->selection().type() != u"Text") return;
  const auto step = UndoStep(QStringLiteral("Replace"));
  if (const auto range = Doc_->selection().createRange()) range->pasteHTML(sNewText);
}
