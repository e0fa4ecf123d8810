// The window that answers the questions of the Quick Tips menu. It keeps its text while it is hidden, and its close box
// only hides it.
#pragma once

#include <QWidget>

class QLabel;
class QPlainTextEdit;
class QPushButton;

class FTip : public QWidget {
  Q_OBJECT

 public:
  FTip();

  // Puts the question `Caption` and its answer into the window and shows it; nothing for an index outside 0 to 11.
  void ShowTip(int Index, const QString& Caption);

  QLabel* LabTitle = nullptr;
  QPlainTextEdit* TTip = nullptr;
  QPushButton* bClose = nullptr;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};
