#include <QApplication>
#include <QSessionManager>
#include <memory>

#include "EndRequests.h"
#include "EngineStart.h"
#include "FSplash.h"
#include "HostKeyboard.h"
#include "HostedWebBrowser.h"
#include "ModMain.h"
#include "Program.h"
#include "RealPlatform.h"

int main(int argc, char** argv) {
  qunsetenv("QTWEBENGINE_REMOTE_DEBUGGING");  // a door for every program of the machine
  ChooseEngineGraphics();
  auto lean = std::make_unique<LeanEngine>();
  QApplication application(argc, argv);
  HostKeyboard::AskForRealReleases();
  QApplication::setApplicationName(QStringLiteral("corvane"));
  QApplication::setApplicationDisplayName(QString());
  // The name of the desktop entry, by which a desktop finds the icon of the windows.
  QApplication::setDesktopFileName(QStringLiteral("example.corvane.corvane"));
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setWindowIcon(FSplash::Logo());
  RealPlatform platform;
  Program program(platform.Services());
  // The engine loads while the windows are made.
  std::unique_ptr<HostedWebBrowser> browser;
  ModMain modMain(program, [&browser](QWidget* parent) {
    browser->MoveInto(parent);
    return std::move(browser);
  });
  QObject::connect(&modMain, &ModMain::Beginning, [&] {
    browser = std::make_unique<HostedWebBrowser>(nullptr);
    browser->Begin();
    lean.reset();
  });
  // Not `quit`, which would ask each window to close, and theirs only hides. This ends the loops of boxes and menus,
  // too.
  QObject::connect(&modMain, &ModMain::Ended, &application, [] { QCoreApplication::exit(); });
  QObject::connect(&application, &QGuiApplication::commitDataRequest, &modMain, [&modMain](QSessionManager& session) {
    const bool mayAsk = session.allowsInteraction();
    if (!modMain.CommitSession(mayAsk)) session.cancel();
    if (mayAsk) session.release();
  });
  const EndRequests requests;
  QObject::connect(&requests, &EndRequests::Asked, &modMain, &ModMain::EndUnasked);
  if (!modMain.Main()) return 0;
  modMain.KeepRescueFile();
  const int result = QApplication::exec();
  modMain.ReleaseWindows();
  return result;
}
