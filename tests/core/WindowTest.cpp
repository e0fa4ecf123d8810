#include <gtest/gtest.h>

#include <QEvent>
#include <QFrame>
#include <QImage>
#include <QWidget>
#include <QWindow>

#include "ControlLook.h"
#include "WindowOrder.h"

namespace {

TEST(SetControlLook, KnowsItsLooks) {
  const std::pair<const char*, int> looks[] = {{"raised", 256}, {"sunken", 512}, {"framed", 257}};
  for (const auto& [look, bits] : looks) {
    QFrame frame;
    EXPECT_EQ(0, ControlLookBits(&frame));
    SetControlLook(&frame, look);
    EXPECT_EQ(bits, ControlLookBits(&frame));
  }
}

// Meant in SetControlLook: a look of unknown name adds all bits.
TEST(SetControlLook, AnUnknownLookAdds769) {
  for (const char* look : {"flat", "", "Framed"}) {
    QFrame frame;
    SetControlLook(&frame, look);
    EXPECT_EQ(769, ControlLookBits(&frame));
  }
}

// Meant in SetControlLook: a look never takes away what an earlier one has set.
TEST(SetControlLook, OnlyAddsBits) {
  QFrame frame;
  SetControlLook(&frame, "raised");
  SetControlLook(&frame, "sunken");
  EXPECT_EQ(768, ControlLookBits(&frame));
  SetControlLook(&frame, "framed");
  EXPECT_EQ(769, ControlLookBits(&frame));
  SetControlLook(&frame, "raised");
  EXPECT_EQ(769, ControlLookBits(&frame));
}

TEST(SetControlLook, FramedIsADoubleEdge) {
  QFrame frame;
  frame.resize(40, 30);
  SetControlLook(&frame, "framed");
  EXPECT_EQ(2, frame.frameWidth());
  const QImage picture = frame.grab().toImage();
  const QRgb ground = picture.pixel(20, 15);
  EXPECT_NE(ground, picture.pixel(20, 0));
  EXPECT_NE(picture.pixel(20, 0), picture.pixel(20, 1));
  EXPECT_EQ(ground, picture.pixel(20, 3));
}

TEST(SetControlLook, AWindowThatIsNoFrameGetsItsEdgeToo) {
  QWidget window;
  window.resize(40, 30);
  const QImage before = window.grab().toImage();
  SetControlLook(&window, "framed");
  SetControlLook(&window, "framed");
  window.resize(60, 50);
  const QImage after = window.grab().toImage();
  EXPECT_NE(after.pixel(30, 25), after.pixel(30, 49));
  EXPECT_NE(after.pixel(30, 25), after.pixel(59, 25));
  EXPECT_EQ(before.pixel(20, 15), after.pixel(30, 25));
  EXPECT_EQ(1, window.findChildren<QFrame*>().size());
  SetControlLook(nullptr, "framed");
}

class HideCounter : public QObject {
 public:
  int hidden = 0;
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Hide) ++hidden;
    return QObject::eventFilter(watched, event);
  }
};

TEST(SetTopmost, KeepsTheWindowOnShow) {
  QWidget window(nullptr, Qt::Tool);
  QWidget child(&window);
  HideCounter counter;
  window.installEventFilter(&counter);
  window.show();
  SetTopmost(&window);
  EXPECT_TRUE(window.windowFlags() & Qt::WindowStaysOnTopHint);
  EXPECT_TRUE(window.windowHandle()->flags() & Qt::WindowStaysOnTopHint);
  SetNotTopmost(&child);
  EXPECT_FALSE(window.windowFlags() & Qt::WindowStaysOnTopHint);
  EXPECT_FALSE(window.windowHandle()->flags() & Qt::WindowStaysOnTopHint);
  EXPECT_EQ(Qt::Tool, window.windowType());
  EXPECT_TRUE(window.isVisible());
  EXPECT_EQ(0, counter.hidden);
}

TEST(SetTopmost, HoldsForAWindowThatIsNotYetOnShow) {
  QWidget window;
  SetTopmost(&window);
  window.show();
  EXPECT_TRUE(window.windowHandle()->flags() & Qt::WindowStaysOnTopHint);
  SetTopmost(nullptr);
}

TEST(ShowInFront, BringsAWindowIntoViewFromWhereverItWas) {
  QWidget window;
  ShowInFront(window);
  EXPECT_TRUE(window.isVisible());
  window.setWindowState(Qt::WindowMaximized | Qt::WindowMinimized);
  ShowInFront(window);
  EXPECT_FALSE(window.isMinimized());
  EXPECT_TRUE(window.isMaximized());
}

}  // namespace
