// One panel of the tool window: a frame with a caption round a column of controls.
#pragma once

#include <QFrame>

class QGroupBox;
class QVBoxLayout;

class ToolPanel : public QFrame {
  Q_OBJECT

 public:
  ToolPanel(int index, const QString& caption, QWidget* parent);

  QString Caption() const;
  void SetCaption(const QString& caption);

  // What the panel shows, from top to bottom.
  QVBoxLayout* Column() const { return column_; }

  // Takes this size in pixels. The font is that of the window around it, or the largest smaller one with which nothing
  // is cut off.
  void FillRoom(QSize room);

 private:
  bool FitsInto(QSize room) const;

  QGroupBox* group_;
  QVBoxLayout* column_;
};
