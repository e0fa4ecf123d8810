// A box for a page's source. It gives its text as it was put in and typed: no-break spaces stay what they are, also on
// their way to the clipboard. Line ends come as "\n", also those that are typed with Shift.
#pragma once

#include <QPlainTextEdit>

class SourceText : public QPlainTextEdit {
  Q_OBJECT

 public:
  explicit SourceText(QWidget* parent = nullptr);

  QString Text() const;
  void SetText(const QString& text) { setPlainText(text); }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  QMimeData* createMimeDataFromSelection() const override;
};
