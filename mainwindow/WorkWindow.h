// The Work Window: the small frame that floats over the page at the bottom, with a head that is clicked to lower or
// raise it.
#pragma once

#include <QFrame>
#include <vector>

class QAbstractButton;
class QGroupBox;
class QLabel;
class QPushButton;
class QToolButton;

class WorkWindow : public QFrame {
  Q_OBJECT

 public:
  explicit WorkWindow(QWidget* parent = nullptr);

  // State text of the head: "6" while the window is up, "5" while it is down.
  QString UpCaption() const;
  void SetUpCaption(const QString& caption);

  QAbstractButton* LabUp = nullptr;  // the head
  QLabel* LabHover = nullptr;        // what the mouse is on
  QPushButton* bProps = nullptr;
  QGroupBox* Frame1 = nullptr;  // the editing buttons
  QGroupBox* FrSel = nullptr;   // the moving buttons
  QLabel* LabSel = nullptr;
  std::vector<QToolButton*> bSel;  // by the index of their rows

  static constexpr int kWidth = 5355;  // twips
  static constexpr int kHeight = 2835;
  static constexpr int kHeadHeight = 255;
  static constexpr int kLowered = 360;  // what shows of a lowered window

 signals:
  void HeadClicked();

 private:
  void BuildButtons();
};
