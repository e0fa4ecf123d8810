// Tells what somebody who opens a page sees: loads a file in a browser engine and prints the text of its body.
#include <QApplication>
#include <QFileInfo>
#include <QTimer>
#include <QUrl>
#include <QWebEngineView>
#include <cstdio>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc != 2) return 2;
  QWebEngineView view;
  view.resize(800, 600);
  QObject::connect(&view, &QWebEngineView::loadFinished, &application, [&](bool good) {
    if (!good) return QCoreApplication::exit(1);
    view.page()->runJavaScript(QStringLiteral("document.body.innerText"), [](const QVariant& text) {
      std::fputs(text.toString().toUtf8().constData(), stdout);
      std::fflush(stdout);
      QCoreApplication::exit(0);
    });
  });
  view.load(QUrl::fromLocalFile(QFileInfo(QString::fromLocal8Bit(argv[1])).absoluteFilePath()));
  view.show();
  QTimer::singleShot(60000, &application, [] { QCoreApplication::exit(3); });
  return QApplication::exec();
}
