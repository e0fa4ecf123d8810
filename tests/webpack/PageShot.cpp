// Takes a picture of a page in the program's own browser engine: page_shot URL FILE.png WIDTH HEIGHT, and prints what
// the JavaScript expressions that follow give, one a line. With --no-scripts in front of them nothing of the page runs.
#include <QApplication>
#include <QTimer>
#include <QUrl>
#include <QWebEngineSettings>
#include <QWebEngineView>
#include <cstdio>

namespace {

class Shot : public QObject {
 public:
  explicit Shot(const QStringList& arguments) : file_(arguments.at(2)), expressions_(arguments.mid(5)) {
    if (!expressions_.isEmpty() && expressions_.first() == QLatin1String("--no-scripts")) {
      expressions_.removeFirst();
      view_.settings()->setAttribute(QWebEngineSettings::JavascriptEnabled, false);
    }
    view_.settings()->setAttribute(QWebEngineSettings::ShowScrollBars, false);
    view_.resize(arguments.at(3).toInt(), arguments.at(4).toInt());
    view_.show();
    connect(&view_, &QWebEngineView::loadFinished, this, [this](bool ok) {
      if (!ok) QApplication::exit(1);
      AskNext();
    });
    look_.setInterval(100);
    connect(&look_, &QTimer::timeout, this, &Shot::Look);
    QTimer::singleShot(20000, this, [] { QApplication::exit(1); });
    view_.load(QUrl(arguments.at(1)));
  }

 private:
  void AskNext() {
    if (expressions_.isEmpty()) return look_.start();
    view_.page()->runJavaScript(expressions_.takeFirst(), [this](const QVariant& answer) {
      std::printf("%s\n", qPrintable(answer.toString()));
      QTimer::singleShot(0, this, &Shot::AskNext);
    });
  }

  // The picture counts once it has come out alike some times in a row.
  void Look() {
    const QImage picture = view_.grab().toImage();
    alike_ = picture == last_ ? alike_ + 1 : 0;
    last_ = picture;
    if (alike_ < 5) return;
    look_.stop();
    QApplication::exit(picture.save(file_) ? 0 : 1);
  }

  QString file_;
  QStringList expressions_;
  QWebEngineView view_;
  QTimer look_;
  QImage last_;
  int alike_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (QApplication::arguments().size() < 5) return 2;
  const Shot shot(QApplication::arguments());
  return QApplication::exec();
}
