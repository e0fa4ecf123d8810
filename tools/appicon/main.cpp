// Paints the logo as a picture of one size: app_icon SVG SIDE OUTPUT, with the side in pixels. The output's ending
// tells its format.
#include <QFileInfo>
#include <QGuiApplication>
#include <QImageReader>
#include <QImageWriter>
#include <cstdio>

namespace {

int Fail(const QString& file, const QString& why) {
  std::fprintf(stderr, "app_icon: %s: %s\n", qPrintable(file), qPrintable(why));
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  qputenv("QT_QPA_PLATFORM", "minimal");
  const QGuiApplication application(argc, argv);
  const QString source = QString::fromLocal8Bit(argv[1]);
  const int side = QByteArray(argv[2]).toInt();
  const QString target = QString::fromLocal8Bit(argv[3]);
  QImageReader reader(source);
  reader.setScaledSize({side, side});
  const QImage picture = reader.read();
  if (picture.isNull()) return Fail(source, reader.errorString());
  QImageWriter writer(target, QFileInfo(target).suffix().toLatin1());
  if (!writer.write(picture)) return Fail(target, writer.errorString());
  return 0;
}
