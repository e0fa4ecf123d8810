// The program with its main window in a size of its own.
#pragma once

#include "CaretBar.h"
#include "ProgramFixture.h"
#include "RealClicks.h"
#include "ToolButton.h"
#include "WorkWindow.h"

class MainWindowTest : public ProgramTest {
 protected:
  MainWindowTest() {
    EXPECT_TRUE(run_.Start());
    Web().showNormal();
    run_.Settle();
  }
  void Resize(int width, int height) {
    Web().resize(width, height);
    run_.Settle();
    EXPECT_EQ(QSize(width, height), Web().size());
  }
  void ClickHead() { ClickAt(*Web().FrWork, {60, 6}); }
  QPoint CaretInView() { return Web().FrCaret->pos() - View().pos(); }
  ToolButton::Look LookOf(int index) { return Web().ImTool[std::size_t(index)]->look(); }
};
