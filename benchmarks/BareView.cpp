// A window with nothing but the browser engine in it, drawn as the program draws: what a start of the program is
// compared with. With --lean before the page's file it leaves out of the engine what the program leaves out.
#include <QApplication>
#include <QMainWindow>
#include <QUrl>
#include <QWebEngineView>
#include <cstring>
#include <optional>

#include "EngineStart.h"

int main(int argc, char** argv) {
  const bool isLean = argc == 3 && std::strcmp(argv[1], "--lean") == 0;
  if (argc != 2 && !isLean) return 2;
  const char* const file = argv[argc - 1];
  ChooseEngineGraphics();
  std::optional<LeanEngine> lean;
  if (isLean) lean.emplace();
  QApplication application(argc, argv);
  QMainWindow window;
  auto* view = new QWebEngineView;
  window.setCentralWidget(view);
  view->load(QUrl::fromLocalFile(QString::fromLocal8Bit(file)));
  window.showMaximized();
  return QApplication::exec();
}
