// A window with nothing but the browser engine in it, drawn as the program draws: what a start of the program is
// compared with.
#include <QApplication>
#include <QMainWindow>
#include <QUrl>
#include <QWebEngineView>

#include "EngineStart.h"

int main(int argc, char** argv) {
  ChooseEngineGraphics();
  QApplication application(argc, argv);
  if (argc != 2) return 2;
  QMainWindow window;
  auto* view = new QWebEngineView;
  window.setCentralWidget(view);
  view->load(QUrl::fromLocalFile(QString::fromLocal8Bit(argv[1])));
  window.showMaximized();
  return QApplication::exec();
}
