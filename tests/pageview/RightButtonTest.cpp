#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>

#include "PageViewFixture.h"
#include "RightButtonHook.h"

namespace {

// Counts what reaches it.
class Window : public QWidget {
 public:
  using QWidget::QWidget;
  int presses = 0;
  int releases = 0;
  int menus = 0;

 protected:
  void mousePressEvent(QMouseEvent*) override { ++presses; }
  void mouseReleaseEvent(QMouseEvent*) override { ++releases; }
  void contextMenuEvent(QContextMenuEvent*) override { ++menus; }
};

void Send(QWidget& window, QEvent::Type type, Qt::MouseButton button) {
  const QPointF at(5, 5);
  QMouseEvent event(type, at, at, button, type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::MouseButtons(button),
                    Qt::NoModifier);
  QApplication::sendEvent(&window, &event);
}

void RightClickOn(QWidget& window) {
  Send(window, QEvent::MouseButtonPress, Qt::RightButton);
  QContextMenuEvent menu(QContextMenuEvent::Mouse, QPoint(5, 5), QPoint(5, 5));
  QApplication::sendEvent(&window, &menu);
  Send(window, QEvent::MouseButtonRelease, Qt::RightButton);
}

// The headless component with a window of its own, and an inner one that gets the mouse.
class WindowedBrowser : public HeadlessWebBrowser {
 public:
  WindowedBrowser() { outer_.setFocusProxy(&inner); }
  QWidget* Widget() override { return &outer_; }

 private:
  QWidget outer_;

 public:
  Window inner{&outer_};
};

class RightButton : public ::testing::Test {
 protected:
  void Make(bool compat4) {
    test_.program.Compat4On = compat4;
    view_ = std::make_unique<WBUC>(test_.program, [this](QWidget*) {
      auto made = std::make_unique<WindowedBrowser>();
      browser_ = made.get();
      return made;
    });
    rightClicks_ = std::make_unique<QSignalSpy>(view_.get(), &WBUC::RightClick);
    browser_->SetHtml(PageAround("<FONT>text</FONT>"));
  }
  // The window hears of the mouse and, unless it is swallowed there, so does the document.
  void RightClick() {
    const int before = browser_->inner.releases;
    RightClickOn(browser_->inner);
    if (browser_->inner.releases > before) browser_->RightClick(QPoint(10, 10));
  }
  int Raised() const { return int(rightClicks_->size()); }

  TestProgram test_;
  WindowedBrowser* browser_ = nullptr;
  std::unique_ptr<WBUC> view_;
  std::unique_ptr<QSignalSpy> rightClicks_;
};

TEST_F(RightButton, RaisesOneRightClickOnTheDocumentsRoad) {
  Make(false);
  EXPECT_FALSE(view_->IsHooked());
  RightClick();
  EXPECT_EQ(1, Raised());
}

TEST_F(RightButton, RaisesOneRightClickOnTheHooksRoad) {
  Make(true);
  EXPECT_TRUE(view_->IsHooked());
  RightClick();
  EXPECT_EQ(1, Raised());
  EXPECT_EQ(0, browser_->inner.presses);
  EXPECT_EQ(0, browser_->inner.releases);
  EXPECT_EQ(0, browser_->inner.menus);
}

TEST_F(RightButton, TheDocumentsEventRaisesNothingWhileTheHookIsOn) {
  Make(true);
  browser_->RightClick(QPoint(10, 10));
  EXPECT_EQ(0, Raised());
}

TEST_F(RightButton, TheHookComesOnTheReleaseOnly) {
  Make(true);
  Send(browser_->inner, QEvent::MouseButtonPress, Qt::RightButton);
  EXPECT_EQ(0, Raised());
  Send(browser_->inner, QEvent::MouseButtonRelease, Qt::RightButton);
  EXPECT_EQ(1, Raised());
}

TEST_F(RightButton, OtherButtonsPassTheHook) {
  Make(true);
  for (const Qt::MouseButton button : {Qt::LeftButton, Qt::MiddleButton}) {
    Send(browser_->inner, QEvent::MouseButtonPress, button);
    Send(browser_->inner, QEvent::MouseButtonRelease, button);
  }
  EXPECT_EQ(2, browser_->inner.presses);
  EXPECT_EQ(2, browser_->inner.releases);
  EXPECT_EQ(0, Raised());
}

TEST_F(RightButton, TheWindowIsHookedAfterEachDocumentAndUnhookedBeforeEachNavigation) {
  Make(true);
  browser_->SetHtml(PageAround("two"));
  EXPECT_TRUE(view_->IsHooked());
  RightClickOn(browser_->inner);
  EXPECT_EQ(1, Raised());
  view_->Navo(test_.Path("none.html"), false);
  EXPECT_FALSE(view_->IsHooked());
  browser_->SetHtml(PageAround("three"));
  EXPECT_TRUE(view_->IsHooked());
  browser_->Navigate("about:blank", 14);
  EXPECT_FALSE(view_->IsHooked());
}

TEST_F(RightButton, UnHookIsSafeAtAnyTimeAndLetsTheButtonThrough) {
  Make(true);
  view_->UnHook();
  view_->UnHook();
  EXPECT_FALSE(view_->IsHooked());
  test_.program.Compat4On = false;
  RightClick();
  EXPECT_EQ(1, Raised());
  EXPECT_EQ(1, browser_->inner.releases);
}

// Meant in WBUC::Doc_onmouseup: from the moment when the box for Internet Explorer 4 is ticked the right button is
// dead, until the next page has come into view.
TEST_F(RightButton, IsDeadFromTheTickToTheNextPage) {
  Make(false);
  test_.program.Compat4On = true;
  RightClick();
  EXPECT_EQ(0, Raised());
  browser_->SetHtml(PageAround("two"));
  RightClick();
  EXPECT_EQ(1, Raised());
}

TEST_F(RightButton, AnyOtherButtonOnTheDocumentsRoadRaisesNothing) {
  Make(false);
  for (const int button : {1, 4}) {
    browser_->MouseDown(QPoint(10, 10), button);
    browser_->MouseUp(QPoint(10, 10), button);
  }
  EXPECT_EQ(0, Raised());
}

TEST_F(RightButton, TheComponentIsLaidOverTheWholeControl) {
  Make(false);
  view_->resize(321, 234);
  view_->show();
  EXPECT_EQ(QRect(0, 0, 321, 234), browser_->Widget()->geometry());
}

TEST(RightButtonHook, HooksOneWindowAtATimeAndNoneForNull) {
  Window first;
  Window second;
  RightButtonHook hook;
  hook.Install(nullptr);
  EXPECT_FALSE(hook.IsInstalled());
  hook.Install(&first);
  hook.Install(&second);
  RightClickOn(second);
  EXPECT_EQ(1, second.releases);
  EXPECT_EQ(1, second.menus);
  QSignalSpy released(&hook, &RightButtonHook::Released);
  RightClickOn(first);
  EXPECT_EQ(1, released.size());
  EXPECT_EQ(0, first.releases);
}

}  // namespace
