// A picture or a line of text that is clicked to go somewhere. It has no edge, shows where the keys are by one, and
// tells of every move of the mouse over it.
#pragma once

#include <QAbstractButton>

class HotLink : public QAbstractButton {
  Q_OBJECT

 public:
  static constexpr int kRoom = 4;  // pixels on each side, for the edge that shows the keys

  // With a picture, shown at `side` pixels each way.
  HotLink(const QString& name, const QIcon& picture, int side);
  // With a text, that large against the desktop's letters.
  HotLink(const QString& name, const QString& text, double size);

  QSize sizeHint() const override;

 signals:
  void MouseMoved();

 protected:
  void changeEvent(QEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QFont Letters() const;

  double size_ = 0;  // 0: a picture
};
