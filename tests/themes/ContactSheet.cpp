// Makes a page of each theme with the program, shows all of them in the browser engine and leaves one picture of it.
//
// Usage: contact_sheet PICTURE
// Ends with 0 when every page shows its theme's tile, from its upper left corner on, around the text.
#include <QApplication>
#include <QFileInfo>
#include <QScreen>
#include <QTimer>
#include <QUrl>
#include <QWebEngineView>
#include <cstdio>

#include "ThemedProgram.h"

namespace {

constexpr QSize cell(1056, 600);
constexpr int columns = 3;

const char* const text =
    "<H2>%1</H2><P>A page in the colours of this theme. The quick brown fox jumps over the lazy dog, and whatever it "
    "sees "
    "on its way is written down here, so that there is something to read.</P><P><FONT size=\"2\">Small print has to be "
    "readable as well, wherever it stands on the tile: 0123456789, and so on.</FONT></P><P><B>Bold words</B>, "
    "<I>slanted "
    "words</I> and <FONT face=\"DejaVu Sans\" size=\"5\">large ones</FONT>.</P>";

// A page for each theme, as the program saves it, in one folder with the pictures, and one that shows all of them.
QList<ThemeShown> MakePages(const QString& folder) {
  QList<ThemeShown> themes;
  QString frames;
  for (const QString& entry : ThemedProgram::Entries()) {
    ThemedProgram run;
    if (!run.Start()) return {};
    themes += run.Dress(entry);
    run.View().AddNewElement(QString::fromLatin1(text).arg(themes.last().caption));
    if (!run.Choose(QStringLiteral("mSavePage"))) return {};
    const QString page = entry + QStringLiteral(".html");
    if (!PutFile(folder + u'/' + page, FileBytes(run.program().project.CurPageFile()))) return {};
    frames += QStringLiteral("<iframe src='%1' width='%2' height='%3' scrolling='no' frameborder='0'></iframe>")
                  .arg(page)
                  .arg(cell.width())
                  .arg(cell.height());
  }
  for (const QString& name : QDir(SampleFolder()).entryList(QDir::Files))
    QFile::copy(SampleFolder() + u'/' + name, folder + u'/' + name);
  const QString sheet = QStringLiteral(
                            "<style>body{margin:0;line-height:0;font-size:0;width:%1px}iframe{display:inline-block}"
                            "</style>%2")
                            .arg(columns * cell.width())
                            .arg(frames);
  return PutFile(folder + QStringLiteral("/sheet.html"), sheet.toLatin1()) ? themes : QList<ThemeShown>();
}

// The share of the cell's points that are the tile's.
double ShareOfTile(const QImage& sheet, QPoint corner, const QImage& tile) {
  int same = 0;
  for (int y = 0; y < cell.height(); ++y)
    for (int x = 0; x < cell.width(); ++x) {
      const QRgb shown = sheet.pixel(corner + QPoint(x, y));
      const QRgb wanted = tile.pixel(x % tile.width(), y % tile.height());
      same += std::abs(qRed(shown) - qRed(wanted)) < 12 && std::abs(qGreen(shown) - qGreen(wanted)) < 12 &&
              std::abs(qBlue(shown) - qBlue(wanted)) < 12;
    }
  return double(same) / (cell.width() * cell.height());
}

bool AllShown(const QImage& sheet, const QList<ThemeShown>& themes) {
  bool good = true;
  for (int number = 0; number < themes.size(); ++number) {
    const QPoint corner(number % columns * cell.width(), number / columns * cell.height());
    const double share = ShareOfTile(sheet, corner, QImage(SampleFolder() + u'/' + themes[number].picture));
    std::printf("%-16s %.0f%% of the page is the tile\n", qPrintable(themes[number].caption), 100 * share);
    // The rest is text, and for one theme the banner.
    good = good && share > 0.85 && share < 0.995;
  }
  return good;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc != 2) return 2;
  const QString picture = QFileInfo(QString::fromLocal8Bit(argv[1])).absoluteFilePath();
  const QTemporaryDir pages;
  const QList<ThemeShown> themes = MakePages(pages.path());
  if (themes.size() != 14) return 3;

  QWebEngineView view;
  view.setAttribute(Qt::WA_DontShowOnScreen);
  view.resize(columns * cell.width(), (int(themes.size()) + columns - 1) / columns * cell.height());
  // The engine paints when it likes: looked at until everything is there.
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, &application, [&] {
    const QImage sheet = view.grab().toImage().convertToFormat(QImage::Format_RGB32);
    if (!AllShown(sheet, themes)) return;
    QDir().mkpath(QFileInfo(picture).path());
    QCoreApplication::exit(sheet.save(picture) ? 0 : 4);
  });
  QObject::connect(&view, &QWebEngineView::loadFinished, &application, [&](bool good) {
    if (!good) return QCoreApplication::exit(5);
    look.start(500);
  });
  view.load(QUrl::fromLocalFile(pages.filePath(QStringLiteral("sheet.html"))));
  view.show();
  QTimer::singleShot(60000, &application, [] { QCoreApplication::exit(6); });
  return QApplication::exec();
}
