// GIF files as another reader sees them.
#include "GifFile.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImageReader>

#include "RandomSeed.h"
#include "Seeded.h"

namespace {

QImage ReadBack(const QByteArray& bytes) {
  QBuffer buffer;
  buffer.setData(bytes);
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer, "gif");
  return reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

// Of `colors` colours and see-through pixels, without any order that a coding could use.
QImage Speckled(QSize size, int colors, std::uint64_t seed) {
  QImage picture(size, QImage::Format_ARGB32_Premultiplied);
  Seeded random(seed);
  for (int y = 0; y < size.height(); ++y)
    for (int x = 0; x < size.width(); ++x) {
      const auto color = unsigned(random.Next() % std::uint64_t(colors));
      picture.setPixel(x, y, color % 7 == 3 ? 0 : qRgb(int(color), int(255 - color), int(color * 37 % 256)));
    }
  return picture;
}

TEST(GifFile, KeepsEveryPixelOfUpTo255Colours) {
  const std::uint64_t first = RandomSeed("KeepsEveryPixelOfUpTo255Colours");
  for (const QSize size : {QSize(1, 1), QSize(2, 1), QSize(1, 9), QSize(17, 3), QSize(64, 64), QSize(257, 129)})
    for (const int colors : {1, 2, 3, 4, 5, 9, 16, 17, 33, 100, 129, 255}) {
      const QImage picture = Speckled(size, colors, first + std::uint64_t(colors * 1000 + size.width()));
      EXPECT_EQ(picture, ReadBack(GifFile(picture))) << size.width() << " by " << size.height() << ", " << colors;
    }
}

// The coding runs out of codes again and again here, and at every length of the run before.
TEST(GifFile, KeepsEveryPixelWhereTheCodesRunOut) {
  for (int width = 300; width < 340; ++width) {
    const QImage picture = Speckled({width, 60}, 255, std::uint64_t(width));
    ASSERT_EQ(picture, ReadBack(GifFile(picture))) << width;
  }
  QImage plain(4000, 1000, QImage::Format_ARGB32_Premultiplied);
  plain.fill(qRgb(1, 2, 3));
  EXPECT_EQ(plain, ReadBack(GifFile(plain)));
}

TEST(GifFile, ASeeThroughPictureStaysOne) {
  QImage picture(20, 20, QImage::Format_ARGB32_Premultiplied);
  picture.fill(0);
  EXPECT_EQ(picture, ReadBack(GifFile(picture)));
  picture.setPixel(3, 4, qRgba(10, 20, 30, 127));
  EXPECT_EQ(0, qAlpha(ReadBack(GifFile(picture)).pixel(3, 4)));
  picture.setPixel(3, 4, qRgba(10, 20, 30, 128));
  EXPECT_EQ(qRgb(10, 20, 30), ReadBack(GifFile(picture)).pixel(3, 4));
}

TEST(GifFile, PutsColoursTogetherThatAreTooMany) {
  QImage picture(256, 64, QImage::Format_ARGB32_Premultiplied);
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) picture.setPixel(x, y, qRgb(x, 4 * y, 128));
  const QImage read = ReadBack(GifFile(picture));
  ASSERT_EQ(picture.size(), read.size());
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) {
      ASSERT_NEAR(x, qRed(read.pixel(x, y)), 16);
      ASSERT_NEAR(4 * y, qGreen(read.pixel(x, y)), 16);
      ASSERT_NEAR(128, qBlue(read.pixel(x, y)), 1);
    }
}

}  // namespace
