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

// Whether the pixels' codes end with the end code in its right length, and nothing but the last byte's rest behind it.
bool EndsWithItsEndCode(const QByteArray& bytes) {
  qsizetype at = 13 + (3 << ((bytes[10] & 7) + 1)) + 8 + 10;
  const unsigned depth = quint8(bytes[at++]), clear = 1U << depth;
  QByteArray codes;
  for (qsizetype length = quint8(bytes[at++]); length > 0; length = quint8(bytes[at++])) {
    codes += bytes.mid(at, length);
    at += length;
  }
  unsigned length = depth + 1, next = clear + 2;
  bool isFirst = true;
  for (qsizetype bit = 0; bit + length <= codes.size() * 8;) {
    unsigned code = 0;
    for (unsigned i = 0; i < length; ++i, ++bit) code |= unsigned(codes[bit / 8] >> (bit % 8) & 1) << i;
    if (code == clear + 1) return codes.size() * 8 - bit < 8;
    if (code == clear) {
      length = depth + 1;
      next = clear + 2;
    } else if (!isFirst && next < 4096 && ++next == 1U << length && length < 12) {
      ++length;
    }
    isFirst = code == clear;
  }
  return false;
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

TEST(GifFile, EndsWithItsEndCodeAfterAnyNumberOfCodes) {
  const std::uint64_t first = RandomSeed("EndsWithItsEndCodeAfterAnyNumberOfCodes");
  for (int width = 1; width < 700; ++width)
    ASSERT_TRUE(EndsWithItsEndCode(GifFile(Speckled({width, 1}, 9, first + std::uint64_t(width))))) << width;
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
