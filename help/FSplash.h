// The window that tells about the program. It is made first of all windows and stays hidden until it is asked for.
#pragma once

#include <QIcon>
#include <array>

#include "HelpWindow.h"

class HotLink;
class QFrame;
class QLabel;
struct Program;

class FSplash : public HelpWindow {
  Q_OBJECT

 public:
  // Must outlive the window.
  explicit FSplash(Program& program);

  // Shows the window with its second half, the version and the thanks, which stays in view from then on.
  void ShowAbout();

  // Hands the address of the program's web page to the desktop; what comes of it isn't looked at.
  void OpenHomePage();

  // The program's sign, in all sizes.
  static QIcon Logo();

  HotLink* Image1 = nullptr;
  HotLink* Label3 = nullptr;
  // What it does, where a click leads, the heading of the list, and the ten entries of the list.
  std::array<QLabel*, 13> Label2{};
  QFrame* FrAbout = nullptr;

 protected:
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  QWidget* NewList();
  QFrame* NewAboutFrame();
  void TakePointer();

  Program& program_;
  QCursor pointer_;
};
