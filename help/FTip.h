// The window that answers the questions of the Quick Tips menu. It keeps its text while it is hidden.
#pragma once

#include "HelpWindow.h"

class QLabel;
class QPlainTextEdit;

class FTip : public HelpWindow {
  Q_OBJECT

 public:
  FTip();

  // Puts the question `Caption` and its answer into the window and shows it; nothing for an index outside 0 to 11.
  void ShowTip(int Index, const QString& Caption);

  QLabel* LabTitle = nullptr;
  QPlainTextEdit* TTip = nullptr;
};
