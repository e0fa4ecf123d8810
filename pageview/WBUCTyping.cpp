// Typing: a released key becomes HTML at the insertion point.
#include "KeyTable.h"
#include "Program.h"
#include "WBUC.h"

namespace {
const QString character = QStringLiteral("character");
}

void WBUC::Doc_onkeyup() {
  if (!CurrentTextRange_) {
    keyPresses_.PushNowhere();
    return;
  }
  const QString brClear = QString::fromLatin1(program_.BrClear);
  const KeyMeaning key = KeyToText(Event().keyCode(), Event().shiftKey(), brClear);
  const QString& sKey = key.html;
  using Kind = EditHistory::Command::Kind;
  const bool isReturn = sKey == u"<BR>" || sKey == brClear;
  const EditHistory::Command step(history_, QStringLiteral("Typing"), isReturn ? Kind::FirstLetter : Kind::Letter);
  if (key.action == KeyAction::Backspace) BackspaceChar();
  if (key.action == KeyAction::Delete) DeleteChar();
  if (sKey == u" ") {
    CurrentTextRange_->setText(CurrentTextRange_->text() + sKey);
  } else if (!sKey.isEmpty()) {
    CurrentTextRange_->pasteHTML(sKey);
    CurrentTextRange_->move(character, 0);
  }
  if (isReturn) {
    // A line that has just begun needs something on it. These blanks pile up behind the text and stay.
    CurrentTextRange_->pasteHTML(QStringLiteral("&nbsp;"));
    CurrentTextRange_->move(character, -1);
  }
  keyPresses_.Push(sKey, CurrentTextRange_);
}

// Both work on a duplicate: the insertion point itself is left where it is.
void WBUC::BackspaceChar() {
  if (!CurrentTextRange_) return;
  const auto range = CurrentTextRange_->duplicate();
  if (!range) return;
  range->move(character, -1);
  range->moveEnd(character, 1);
  range->pasteHTML(QString());
}

void WBUC::DeleteChar() {
  if (!CurrentTextRange_) return;
  const auto range = CurrentTextRange_->duplicate();
  if (!range) return;
  range->move(character, 0);
  range->moveEnd(character, 1);
  range->pasteHTML(QString());
}
