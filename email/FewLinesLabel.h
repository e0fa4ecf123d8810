#pragma once

#include <QLabel>

// A label that wraps to a few lines and no more: what is too long for them ends in an ellipsis, with the whole text as
// tool tip.
class FewLinesLabel : public QLabel {
  Q_OBJECT

 public:
  FewLinesLabel(const QString& text, int mostLines, QWidget* parent = nullptr);

  // Fewer than it may have now.
  void BoundLines(int lines);

  // The whole text is seen at the label's present width.
  bool ShowsAll() const;

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  QStringList Lines(int width) const;

  int mostLines_;
};
