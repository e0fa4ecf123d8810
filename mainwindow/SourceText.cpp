#include "SourceText.h"

#include <QKeyEvent>
#include <QMimeData>
#include <QTextCursor>
#include <QTextDocument>

namespace {

// The box keeps lines apart by a mark of its own.
QString WithLineEnds(QString raw) {
  return raw.replace(QChar::ParagraphSeparator, u'\n');
}

}  // namespace

SourceText::SourceText(QWidget* parent) : QPlainTextEdit(parent) {
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setTabChangesFocus(true);
}

// toPlainText() would turn every no-break space into a blank.
QString SourceText::Text() const {
  return WithLineEnds(document()->toRawText());
}

// The box itself would put in a mark that no page knows as a line end.
void SourceText::keyPressEvent(QKeyEvent* event) {
  if (!event->matches(QKeySequence::InsertLineSeparator)) return QPlainTextEdit::keyPressEvent(event);
  textCursor().insertBlock();
  ensureCursorVisible();
}

QMimeData* SourceText::createMimeDataFromSelection() const {
  auto* data = new QMimeData;
  data->setText(WithLineEnds(textCursor().selectedText()));
  return data;
}
