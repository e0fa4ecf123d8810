// A program that types into a page for as long as it lives, to be killed: prints the number of letters behind each one.
//   rescue_driver FOLDER PERIOD_MS
// FOLDER becomes the program's own folder; what a run before left in it is rescued at the start.
#include <QApplication>
#include <QTimer>
#include <cstdio>

#include "FWeb.h"
#include "HeadlessWebBrowser.h"
#include "ModMain.h"
#include "TestPlatform.h"

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  QApplication application(argc, argv);
  TestPlatform platform;
  platform.folders.AppFolder = QString::fromLocal8Bit(argv[1]);
  Program program(platform.services);
  HeadlessWebBrowser* browser = nullptr;
  ModMain modMain(program, [&](QWidget*) {
    auto made = std::make_unique<HeadlessWebBrowser>();
    browser = made.get();
    return made;
  });
  if (!modMain.Main()) return 1;
  modMain.KeepRescueFile(QByteArray(argv[2]).toInt());
  QTimer typing;
  int letters = 0;
  QObject::connect(&typing, &QTimer::timeout, [&] {
    if (!modMain.Web()->jWB->HasCurrentTextRange()) browser->Click(QPoint(600, 20000));
    browser->KeyUp('Q');
    std::printf("%d\n", ++letters);
    std::fflush(stdout);
  });
  typing.start(2);
  return QApplication::exec();
}
