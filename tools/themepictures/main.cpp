// Paints the pictures of the themes: fourteen tiles and a banner. The same source always gives the same bytes.
//
// Usage: theme_pictures FOLDER [NAME...]
// Without a name all pictures are made.
#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImageWriter>
#include <cstdio>

#include "GifFile.h"
#include "Painters.h"

namespace {

struct TilePicture {
  const char* file;
  QImage (*paint)();
  int quality;  // of the JPEG coding, 0 to 100
};

constexpr TilePicture tiles[] = {
    {"rainbow.jpg", PaintRainbow, 93},
    {"heart.jpg", PaintHearts, 90},
    {"silver.jpg", PaintMetal, 94},
    {"forest.jpg", PaintForest, 82},
    {"ruby.jpg", PaintRuby, 93},
    {"deepblue.jpg", PaintDeepBlue, 92},
    {"stars.jpg", PaintStars, 93},
    {"parchment.jpg", PaintParchment, 90},
    {"white.jpg", PaintMarble, 92},
    {"brocade.jpg", PaintLinenBrocade, 94},
    {"brocblue.jpg", PaintLilacBrocade, 94},
    {"brocred.jpg", PaintPeachBrocade, 94},
    {"paper.jpg", PaintPaper, 92},
    {"pink.jpg", PaintPinstripe, 94},
};
constexpr const char* banner = "hearttop.gif";

QByteArray JpegFile(const QImage& picture, int quality) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QImageWriter writer(&buffer, "jpeg");
  writer.setQuality(quality);
  writer.setOptimizedWrite(true);
  if (!writer.write(picture)) return {};
  return bytes;
}

bool Put(const QString& folder, const char* name, const QByteArray& bytes) {
  QFile file(folder + u'/' + QString::fromLatin1(name));
  return !bytes.isEmpty() && file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const QStringList arguments = QCoreApplication::arguments();
  if (arguments.size() < 2) {
    std::fputs("Usage: theme_pictures FOLDER [NAME...]\n", stderr);
    return 2;
  }
  const QString folder = arguments[1];
  const QStringList names = arguments.mid(2);
  const auto wanted = [&](const char* name) { return names.isEmpty() || names.contains(QString::fromLatin1(name)); };
  bool good = QDir().mkpath(folder);
  for (const TilePicture& tile : tiles)
    if (wanted(tile.file)) good = Put(folder, tile.file, JpegFile(tile.paint(), tile.quality)) && good;
  if (wanted(banner)) good = Put(folder, banner, GifFile(PaintHeartBanner())) && good;
  if (!good) std::fprintf(stderr, "theme_pictures: not all pictures could be made in %s\n", qPrintable(folder));
  return good ? 0 : 1;
}
