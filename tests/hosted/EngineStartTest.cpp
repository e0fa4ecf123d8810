// How the engine is started: ahead of the windows, and without what the program has no use for.
#include "EngineStart.h"

#include <QWebEnginePage>

#include "GraphicsCard.h"
#include "HostedView.h"

namespace {

constexpr char engineFlags[] = "QTWEBENGINE_CHROMIUM_FLAGS";
constexpr char graphicsOfX[] = "QT_XCB_GL_INTEGRATION";

// Puts two variables of the environment back as they were.
class Environment {
 public:
  Environment() : flags_(qgetenv(engineFlags)), graphics_(qgetenv(graphicsOfX)) {}
  ~Environment() {
    flags_.isNull() ? qunsetenv(engineFlags) : qputenv(engineFlags, flags_);
    graphics_.isNull() ? qunsetenv(graphicsOfX) : qputenv(graphicsOfX, graphics_);
  }

 private:
  const QByteArray flags_, graphics_;
};

}  // namespace

TEST(EngineStart, WhatTheUserTellsTheEngineComesFirstAndStays) {
  const Environment before;
  qputenv(engineFlags, "--of-the-user");
  qputenv(graphicsOfX, "xcb_egl");
  {
    const LeanEngine lean;
    EXPECT_EQ("--of-the-user --no-unsandboxed-zygote", qgetenv(engineFlags));
    EXPECT_EQ("xcb_egl", qgetenv(graphicsOfX));
  }
  EXPECT_EQ("--of-the-user", qgetenv(engineFlags));
  EXPECT_EQ("xcb_egl", qgetenv(graphicsOfX));
}

TEST(EngineStart, ProgramsThatAreStartedLaterHearNothingOfIt) {
  const Environment before;
  qunsetenv(engineFlags);
  qunsetenv(graphicsOfX);
  {
    const LeanEngine lean;
    EXPECT_EQ("--no-unsandboxed-zygote", qgetenv(engineFlags));
    EXPECT_EQ(HasGraphicsCard() ? "" : "none", qgetenv(graphicsOfX));
  }
  EXPECT_FALSE(qEnvironmentVariableIsSet(engineFlags));
  EXPECT_FALSE(qEnvironmentVariableIsSet(graphicsOfX));
}

TEST(EngineStart, ThePageThatIsBegunAheadIsTheOneThatIsAskedForFirst) {
  TestProgram test;
  QWidget window;
  window.resize(800, 600);
  auto browser = std::make_unique<HostedWebBrowser>(nullptr);
  browser->Begin();
  int loads = 0;
  QObject::connect(browser->enginePage(), &QWebEnginePage::loadStarted, &window, [&loads] { ++loads; });
  HostedWebBrowser* const begun = browser.get();
  const WebBrowserFactory factory = [&browser](QWidget* parent) {
    browser->MoveInto(parent);
    return std::move(browser);
  };
  auto view = std::make_unique<WBUC>(test.program, factory, &window);
  view->setGeometry(0, 0, 800, 600);
  window.show();
  ASSERT_TRUE(HostedPage::WaitFor([&] { return view->DocReady(); }));
  EXPECT_EQ(1, loads);
  EXPECT_EQ(view.get(), begun->Widget()->parentWidget());
  EXPECT_TRUE(begun->Widget()->isVisible());
  EXPECT_EQ(view->size(), begun->Widget()->size());
  const QString file = test.Path(QStringLiteral("page.html"));
  ASSERT_TRUE(PutFile(file, "<BODY><P>of the file</P></BODY>"));
  QSignalSpy complete(view.get(), &WBUC::DocComplete);
  view->Navo(file, false);
  ASSERT_TRUE(HostedPage::WaitFor([&] { return complete.count() > 0; }));
  EXPECT_TRUE(view->Source().contains(QStringLiteral("of the file")));
}
