#include "ReadPicture.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QImageReader>

#include "PictureFiles.h"
#include "PictureFormat.h"
#include "PlainBmp.h"
#include "TestPlatform.h"

namespace {

class ReadPictureTest : public ::testing::Test {
 protected:
  QString File(const QString& name, const QByteArray& bytes) {
    EXPECT_TRUE(PutFile(test_.Path(name), bytes));
    return test_.Path(name);
  }
  TestProgram test_;
};

const PictureSample& Sample(const QList<PictureSample>& samples, const char* name) {
  return *std::find_if(samples.begin(), samples.end(), [&](const auto& sample) { return !strcmp(sample.name, name); });
}

TEST_F(ReadPictureTest, EveryFormatIsRead) {
  for (const PictureSample& sample : PictureSamples()) {
    ASSERT_FALSE(sample.bytes.isEmpty()) << sample.name;
    EXPECT_FALSE(ReadPicture(File("a.dat", sample.bytes)).isNull()) << sample.name;
  }
  const QImage image = PlacePicture(20, 15);
  for (const char* format : {"bmp", "png"}) {
    const QImage read = ReadPicture(File("b.dat", EncodedPicture(image, format)));
    EXPECT_EQ(image, read.convertToFormat(QImage::Format_RGB32)) << format;
  }
  const QImage fromTop = PictureFromBytes(Sample(PictureSamples(), "bmp from the top").bytes);
  EXPECT_EQ(image.mirrored(), fromTop.convertToFormat(QImage::Format_RGB32));
}

// The form that the program writes has a reader of its own.
TEST_F(ReadPictureTest, APlainBitmapIsReadAsTheGeneralReaderDoes) {
  for (const int width : {1, 2, 3, 4, 5, 7, 8, 1000, 29'999}) {
    for (const int height : {1, 2, 61}) {
      QImage image = PlacePicture(width, height);
      image.setDotsPerMeterX(3000);
      image.setDotsPerMeterY(4000);
      const QByteArray bytes = EncodedPicture(image, "bmp");
      QBuffer buffer;
      buffer.setData(bytes);
      ASSERT_TRUE(buffer.open(QIODevice::ReadOnly));
      const QImage plain = ReadPlainBmp(buffer);
      ASSERT_EQ(image, plain.convertToFormat(QImage::Format_RGB32)) << width << ' ' << height;
      EXPECT_EQ(3000, plain.dotsPerMeterX());
      EXPECT_EQ(4000, plain.dotsPerMeterY());
      EXPECT_EQ(image, ReadPicture(File("a.bmp", bytes)).convertToFormat(QImage::Format_RGB32));
      EXPECT_EQ(image, PictureFromBytes(bytes).convertToFormat(QImage::Format_RGB32));
    }
  }
}

TEST_F(ReadPictureTest, ThePlainReaderLeavesOtherFormsToTheGeneralOne) {
  const auto plain = [](QByteArray bytes) {
    QBuffer buffer(&bytes);
    EXPECT_TRUE(buffer.open(QIODevice::ReadOnly));
    return ReadPlainBmp(buffer);
  };
  for (const PictureSample& sample : PictureSamples())
    EXPECT_EQ(!strcmp(sample.name, "bmp"), !plain(sample.bytes).isNull()) << sample.name;
  const QByteArray whole = EncodedPicture(PlacePicture(20, 15), "bmp");
  for (qsizetype length = 0; length < whole.size(); ++length) ASSERT_TRUE(plain(whole.left(length)).isNull()) << length;
  // Pixels that begin later, as a file may say.
  QByteArray later = whole;
  later.insert(54, QByteArray(10, 'x'));
  PutLittle(later, 10, 64, 4);
  EXPECT_EQ(PlacePicture(20, 15), plain(later).convertToFormat(QImage::Format_RGB32));
  for (const quint32 begin : {0u, 53u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
    QByteArray wrong = whole;
    PutLittle(wrong, 10, begin, 4);
    EXPECT_TRUE(plain(wrong).isNull()) << begin;
  }
  // A palette, of which such pixels have no need.
  QByteArray colorful = whole;
  PutLittle(colorful, 46, 2, 4);
  EXPECT_TRUE(plain(colorful).isNull());
}

TEST_F(ReadPictureTest, TheContentTellsTheFormatAndNotTheName) {
  const QByteArray png = EncodedPicture(PlacePicture(7, 5), "png");
  for (const char* name : {"a.jpg", "a.gif", "a.bmp", "a.ico", "a", "a.txt"})
    EXPECT_EQ(QSize(7, 5), ReadPicture(File(name, png)).size()) << name;
  EXPECT_TRUE(ReadPicture(File("page.jpg", "<HTML><BODY>no picture</BODY></HTML>")).isNull());
  EXPECT_TRUE(
      ReadPicture(File("drawing.png", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>")).isNull());
  EXPECT_TRUE(ReadPicture(File("map.png", "P6\n1 1\n255\nabc")).isNull());
}

TEST_F(ReadPictureTest, ABrokenBeginningIsNoPicture) {
  for (const char* begin : {"BM", "GIF89a", "GIF87a", "\xFF\xD8\xFF", "\x89PNG\r\n\x1A\n", "RIFF"}) {
    EXPECT_TRUE(PictureFromBytes(begin).isNull()) << begin;
    EXPECT_TRUE(PictureFromBytes(QByteArray(begin) + QByteArray(5000, 'x')).isNull()) << begin;
    EXPECT_TRUE(PictureFromBytes(QByteArray(begin) + QByteArray(5000, '\0')).isNull()) << begin;
  }
  EXPECT_TRUE(PictureFromBytes(QByteArray("\0\0\1\0", 4) + QByteArray(5000, '\0')).isNull());
}

TEST_F(ReadPictureTest, NothingComesOfWhatIsNoFileOrEmpty) {
  EXPECT_TRUE(ReadPicture(File("empty.jpg", "")).isNull());
  EXPECT_TRUE(ReadPicture(test_.Path("missing.jpg")).isNull());
  EXPECT_TRUE(ReadPicture(test_.program.project.CardPath()).isNull());
  EXPECT_TRUE(ReadPicture("").isNull());
  EXPECT_TRUE(ReadPicture("/dev/zero").isNull());
}

TEST_F(ReadPictureTest, AFileCutOffAnywhereIsRefused) {
  for (const PictureSample& sample : PictureSamples()) {
    // The mark behind the last frame of a GIF may be missing, and further frames.
    const bool gif = PictureFormatOf(sample.bytes) == PictureFormat::Gif;
    const qsizetype whole = gif ? GifFile(20, 15, {GifColor::Red}).size() - 1 : sample.bytes.size();
    for (qsizetype length = 0; length < whole; ++length)
      ASSERT_TRUE(PictureFromBytes(sample.bytes.left(length)).isNull()) << sample.name << ' ' << length;
    EXPECT_FALSE(PictureFromBytes(sample.bytes.left(whole)).isNull()) << sample.name;
  }
}

TEST_F(ReadPictureTest, WhatFollowsThePicturePlaysNoPart) {
  for (const PictureSample& sample : PictureSamples())
    EXPECT_EQ(PictureFromBytes(sample.bytes), PictureFromBytes(sample.bytes + QByteArray(100, 'x'))) << sample.name;
}

TEST_F(ReadPictureTest, AThumbnailInsideAJpegIsNotItsEnd) {
  const QByteArray small = EncodedPicture(PlacePicture(4, 4), "jpg");
  QByteArray header("\xFF\xE1", 2);
  header += QByteArray(2, '\0') + small;
  PutBig(header, 2, quint32(small.size()) + 2, 2);
  const QByteArray large = EncodedPicture(PlacePicture(40, 30), "jpg");
  const QByteArray both = large.left(2) + header + large.mid(2);
  EXPECT_EQ(QSize(40, 30), PictureFromBytes(both).size());
  EXPECT_TRUE(PictureFromBytes(both.left(2 + header.size() + 100)).isNull());
}

TEST_F(ReadPictureTest, AnAnimationGivesItsFirstFrame) {
  const QImage image = PictureFromBytes(GifFile(9, 7, {GifColor::Red, GifColor::Green, GifColor::White}));
  EXPECT_EQ(QSize(9, 7), image.size());
  EXPECT_EQ(QColor(Qt::red), image.pixelColor(8, 6));
}

TEST_F(ReadPictureTest, AJpegStandsUpright) {
  QImage image(40, 24, QImage::Format_RGB32);
  image.fill(Qt::white);
  for (int x = 0; x < 8; ++x)
    for (int y = 0; y < 8; ++y) image.setPixelColor(x, y, Qt::black);
  const QImage read = PictureFromBytes(TurnedJpeg(image));
  ASSERT_EQ(QSize(24, 40), read.size());
  EXPECT_LT(qGray(read.pixel(20, 3)), 50);
  EXPECT_GT(qGray(read.pixel(3, 3)), 200);
}

TEST_F(ReadPictureTest, TheBounds) {
  EXPECT_TRUE(IsHoldableSize({29'999, 1}));
  EXPECT_TRUE(IsHoldableSize({1, 29'999}));
  EXPECT_TRUE(IsHoldableSize({8000, 8000}));
  EXPECT_FALSE(IsHoldableSize({30'000, 1}));
  EXPECT_FALSE(IsHoldableSize({1, 30'000}));
  EXPECT_FALSE(IsHoldableSize({8000, 8001}));
  EXPECT_FALSE(IsHoldableSize({0, 5}));
  EXPECT_FALSE(IsHoldableSize({5, 0}));
  EXPECT_FALSE(IsHoldableSize({-5, -5}));
  EXPECT_FALSE(IsHoldableSize({65'535, 65'535}));
}

// Pictures as they could be, but too large; the PNG is a real one, of one bit a pixel, in few bytes.
TEST_F(ReadPictureTest, APictureBombIsRefused) {
  for (const QSize size : {QSize(30'000, 4), QSize(4, 30'000), QSize(16'000, 8000)}) {
    QImage image(size, QImage::Format_Mono);
    image.fill(0);
    for (const char* format : {"png", "bmp"}) {
      const QByteArray bytes = EncodedPicture(image, format);
      ASSERT_TRUE(IsWholePicture(bytes, PictureFormatOf(bytes))) << format;
      EXPECT_TRUE(PictureFromBytes(bytes).isNull()) << format << ' ' << size.width();
    }
  }
  QImage allowed(29'999, 4, QImage::Format_Mono);
  allowed.fill(0);
  EXPECT_EQ(allowed.size(), PictureFromBytes(EncodedPicture(allowed, "png")).size());
}

TEST_F(ReadPictureTest, ALargePhotoIsNoBomb) {
  QImage photo(8000, 6000, QImage::Format_RGB32);
  photo.fill(Qt::blue);
  EXPECT_EQ(photo.size(), PictureFromBytes(EncodedPicture(photo, "jpg")).size());
}

TEST_F(ReadPictureTest, AClaimOfHugeSizeIsRefusedAtOnce) {
  struct Claim {
    const char* sample;
    int widthAt;
    int heightAt;
    int length;
    bool big;
  };
  QByteArray jpeg = EncodedPicture(PlacePicture(20, 15), "jpg");
  const int frame = int(jpeg.indexOf("\xFF\xC0"));
  ASSERT_GT(frame, 0);
  const QList<PictureSample> samples = PictureSamples();
  QElapsedTimer timer;
  timer.start();
  for (const quint32 claimed : {0xFFFFu, 30'000u, 20'000u}) {
    PutBig(jpeg, frame + 5, claimed, 2);
    PutBig(jpeg, frame + 7, claimed, 2);
    ASSERT_TRUE(IsWholePicture(jpeg, PictureFormat::Jpeg));
    EXPECT_TRUE(PictureFromBytes(jpeg).isNull()) << claimed;
    QByteArray gif = Sample(samples, "gif").bytes;
    PutLittle(gif, 6, claimed, 2);
    PutLittle(gif, 8, claimed, 2);
    ASSERT_TRUE(IsWholePicture(gif, PictureFormat::Gif));
    EXPECT_TRUE(PictureFromBytes(gif).isNull()) << claimed;
    for (const quint32 sign : {1u, quint32(-1)}) {
      QByteArray bmp = Sample(samples, "bmp").bytes;
      PutLittle(bmp, 18, claimed, 4);
      PutLittle(bmp, 22, claimed * sign, 4);
      EXPECT_TRUE(PictureFromBytes(bmp).isNull()) << claimed;
    }
  }
  EXPECT_LT(timer.elapsed(), 5000);
}

TEST_F(ReadPictureTest, TheReadersLimitComesBack) {
  const int before = QImageReader::allocationLimit();
  QImageReader::setAllocationLimit(77);
  EXPECT_FALSE(PictureFromBytes(EncodedPicture(PlacePicture(20, 15), "png")).isNull());
  EXPECT_EQ(77, QImageReader::allocationLimit());
  QImageReader::setAllocationLimit(before);
}

TEST_F(ReadPictureTest, AnIconsImagesStandBehindAllOfItsDirectory) {
  // Two entries; the first one's image of 4 bytes at 38 or, within the second entry, at 22.
  QByteArray icon = QByteArray::fromHex("000001000200") + QByteArray(32, '\0') + "data";
  icon[6 + 8] = 4;
  icon[6 + 12] = 38;
  EXPECT_TRUE(IsWholePicture(icon, PictureFormat::Ico));
  icon[6 + 12] = 37;
  EXPECT_FALSE(IsWholePicture(icon, PictureFormat::Ico));
  icon[6 + 12] = 22;
  EXPECT_FALSE(IsWholePicture(icon, PictureFormat::Ico));
}

TEST_F(ReadPictureTest, ARestartMarkInAScanHasNoLength) {
  for (const char* const mark : {"d0", "d7"})
    EXPECT_TRUE(
        IsWholePicture(QByteArray::fromHex("ffd8ffda0002aaff" + QByteArray(mark) + "7f7fffd9"), PictureFormat::Jpeg))
        << mark;
  EXPECT_FALSE(IsWholePicture(QByteArray::fromHex("ffd8ffda0002aaffd87f7fffd9"), PictureFormat::Jpeg));
}

TEST_F(ReadPictureTest, RunLengthsNeedNoRowsOfTheirOwn) {
  for (const char compression : {'\1', '\2', '\0'}) {
    QByteArray bmp = "BM" + QByteArray(52, '\0') + "data";
    bmp[10] = 54;
    bmp[14] = 40;
    bmp[18] = bmp[22] = 100;  // width and height
    bmp[28] = 4;
    bmp[30] = compression;
    bmp[34] = 4;
    EXPECT_EQ(compression != 0, IsWholePicture(bmp, PictureFormat::Bmp)) << int(compression);
    bmp.chop(1);
    EXPECT_FALSE(IsWholePicture(bmp, PictureFormat::Bmp)) << int(compression);
  }
}

TEST_F(ReadPictureTest, AFileBeyondEveryPictureIsNotEvenRead) {
  const QString path = File("large.bmp", EncodedPicture(PlacePicture(20, 15), "bmp"));
  ASSERT_FALSE(ReadPicture(path).isNull());
  QFile file(path);
  ASSERT_TRUE(file.resize(400'000'000));
  EXPECT_TRUE(ReadPicture(path).isNull());
}

}  // namespace
