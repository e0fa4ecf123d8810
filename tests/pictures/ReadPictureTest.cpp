#include "ReadPicture.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QColorSpace>
#include <QFile>
#include <QImageReader>

#include "OwnTime.h"
#include "PictureBounds.h"
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

bool IsWhole(QByteArray bytes, PictureFormat format) {
  QBuffer buffer(&bytes);
  return buffer.open(QIODevice::ReadOnly) && IsWholePicture(buffer, format);
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

// Its reader asks for twice the memory of any other.
TEST_F(ReadPictureTest, APngOfSixteenBitsAChannelIsRead) {
  const QImage image = PlacePicture(1000, 900);
  for (const QImage::Format deep : {QImage::Format_RGBX64, QImage::Format_RGBA64}) {
    const QImage read = PictureFromBytes(EncodedPicture(image.convertToFormat(deep), "png"));
    ASSERT_EQ(64, read.depth());
    EXPECT_EQ(image, read.convertToFormat(QImage::Format_RGB32));
  }
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
    const PictureFormat format = PictureFormatOf(sample.bytes);
    if (format == PictureFormat::Jpeg) continue;
    // The mark behind the last frame of a GIF may be missing, and further frames; of a PNG the sum behind its end mark.
    const qsizetype whole = format == PictureFormat::Gif   ? GifFile(20, 15, {GifColor::Red}).size() - 1
                            : format == PictureFormat::Png ? sample.bytes.size() - 4
                                                           : sample.bytes.size();
    for (qsizetype length = 0; length < whole; ++length)
      ASSERT_TRUE(PictureFromBytes(sample.bytes.left(length)).isNull()) << sample.name << ' ' << length;
    EXPECT_FALSE(PictureFromBytes(sample.bytes.left(whole)).isNull()) << sample.name;
  }
}

// Webcams leave the end mark out, and downloads lose more. Every viewer shows what there is.
TEST_F(ReadPictureTest, AJpegWithoutItsEndIsShownAsFarAsItGoes) {
  const QByteArray bytes = EncodedPicture(PlacePicture(160, 320), "jpg");
  const QImage whole = PictureFromBytes(bytes);
  EXPECT_EQ(whole, PictureFromBytes(bytes.chopped(2)));
  const QImage most = PictureFromBytes(bytes.chopped(40));
  ASSERT_EQ(whole.size(), most.size());
  EXPECT_EQ(whole.copy(0, 0, 160, 240), most.copy(0, 0, 160, 240));
  EXPECT_NE(whole, most);
  // Without anything of the picture itself there is nothing to show.
  const qsizetype scan = bytes.indexOf("\xFF\xDA");
  ASSERT_LT(0, scan);
  for (qsizetype length = 0; length < scan; ++length)
    ASSERT_TRUE(PictureFromBytes(bytes.left(length)).isNull()) << length;
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

TEST_F(ReadPictureTest, TheBoundsAreThoseOfMemoryAndOfAWindow) {
  EXPECT_TRUE(IsHoldableSize({12'000, 9000}));
  EXPECT_TRUE(IsHoldableSize({16'777'214, 1}));
  EXPECT_TRUE(IsHoldableSize({1, 16'777'214}));
  EXPECT_FALSE(IsHoldableSize({16'777'215, 1}));
  EXPECT_FALSE(IsHoldableSize({1, 16'777'215}));
  EXPECT_FALSE(IsHoldableSize({1'000'000, 1'000'000}));
  EXPECT_FALSE(IsHoldableSize({0, 5}));
  EXPECT_FALSE(IsHoldableSize({5, 0}));
  EXPECT_FALSE(IsHoldableSize({-5, -5}));
  // A byte holds only so much.
  EXPECT_TRUE(IsPlausibleSize({8000, 8000}, 1));
  EXPECT_FALSE(IsPlausibleSize({8001, 8000}, 1));
  EXPECT_FALSE(IsPlausibleSize({65'535, 65'535}, 1'048'000));
  EXPECT_TRUE(IsPlausibleSize({65'535, 65'535}, 1'049'000));
}

// A real one, of one bit a pixel, in few bytes.
TEST_F(ReadPictureTest, APictureBombIsRefused) {
  QImage image(16'000, 16'000, QImage::Format_Mono);
  image.fill(0);
  const QByteArray bytes = EncodedPicture(image, "png");
  ASSERT_LT(bytes.size(), 60'000);
  EXPECT_TRUE(PictureFromBytes(bytes).isNull());
  const QImage allowed = image.copy(0, 0, 16'000, 4000);
  EXPECT_EQ(allowed.size(), PictureFromBytes(EncodedPicture(allowed, "png")).size());
}

TEST_F(ReadPictureTest, LongStripsAreRead) {
  QImage strip(65'000, 4, QImage::Format_RGB32);
  strip.fill(Qt::blue);
  strip.setPixelColor(64'999, 3, Qt::red);
  EXPECT_EQ(strip, PictureFromBytes(EncodedPicture(strip, "bmp")).convertToFormat(QImage::Format_RGB32));
  EXPECT_EQ(strip.size(), PictureFromBytes(EncodedPicture(strip, "jpg")).size());
}

TEST_F(ReadPictureTest, ALargePhotoIsNoBomb) {
  QImage photo(12'000, 9000, QImage::Format_RGB32);
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
  const OwnTime taken;
  // The widest JPEG of all is as wide as its decoder takes.
  for (const quint32 claimed : {0xFFFFu, 65'500u, 30'000u, 20'000u}) {
    PutBig(jpeg, frame + 5, claimed, 2);
    PutBig(jpeg, frame + 7, claimed, 2);
    EXPECT_TRUE(PictureFromBytes(jpeg).isNull()) << claimed;
    EXPECT_TRUE(PictureFromBytes(jpeg.left(jpeg.indexOf("\xFF\xDA") + 20)).isNull()) << claimed;
    QByteArray gif = Sample(samples, "gif").bytes;
    PutLittle(gif, 6, claimed, 2);
    PutLittle(gif, 8, claimed, 2);
    ASSERT_TRUE(IsWhole(gif, PictureFormat::Gif));
    EXPECT_TRUE(PictureFromBytes(gif).isNull()) << claimed;
    QByteArray png = Sample(samples, "png").bytes;
    PutBig(png, 16, claimed, 4);
    PutBig(png, 20, claimed, 4);
    EXPECT_TRUE(PictureFromBytes(png).isNull()) << claimed;
    for (const quint32 sign : {1u, quint32(-1)}) {
      for (const quint32 compression : {0u, 1u}) {
        QByteArray bmp = Sample(samples, "bmp of 256 colours").bytes;
        PutLittle(bmp, 18, claimed, 4);
        PutLittle(bmp, 22, claimed * sign, 4);
        PutLittle(bmp, 30, compression, 4);
        EXPECT_TRUE(PictureFromBytes(bmp).isNull()) << claimed << ' ' << compression;
      }
    }
  }
  EXPECT_LT(taken.Seconds(), 5);
}

QByteArray IconOf(const QByteArray& png) {
  QByteArray icon("\0\0\1\0\1\0\x20\x20\0\0\1\0\x20\0", 14);
  icon.append(8, '\0');
  PutLittle(icon, 14, quint32(png.size()), 4);
  PutLittle(icon, 18, quint32(icon.size()), 4);
  return icon + png;
}

// Its decoder would take and clear a gigabyte before it looks what there is.
TEST_F(ReadPictureTest, APngWithAClaimOfMoreThanThereIsIsNotGivenToItsDecoder) {
  const QByteArray png = Sample(PictureSamples(), "png").bytes;
  constexpr int behindHeader = 33, checkAndEnd = 12;
  QByteArray head(8, '\0');
  PutBig(head, 0, 1'000'000'000, 4);
  head.replace(4, 4, "tEXt");
  ASSERT_TRUE(IsWhole(IconOf(png), PictureFormat::Ico));
  ASSERT_FALSE(PictureFromBytes(IconOf(png)).isNull());
  for (const qsizetype at : {qsizetype(behindHeader), png.size() - checkAndEnd}) {
    QByteArray claims = png;
    claims.insert(at, head);
    EXPECT_FALSE(IsWhole(claims, PictureFormat::Png)) << at;
    EXPECT_TRUE(PictureFromBytes(claims).isNull()) << at;
    EXPECT_FALSE(IsWhole(IconOf(claims), PictureFormat::Ico)) << at;
    EXPECT_TRUE(PictureFromBytes(IconOf(claims)).isNull()) << at;
  }
}

TEST_F(ReadPictureTest, TheReadersLimitComesBack) {
  const int before = QImageReader::allocationLimit();
  QImageReader::setAllocationLimit(77);
  EXPECT_FALSE(PictureFromBytes(EncodedPicture(PlacePicture(20, 15), "png")).isNull());
  EXPECT_EQ(77, QImageReader::allocationLimit());
  QImageReader::setAllocationLimit(before);
}

// A directory of the most entries, all of one image.
TEST_F(ReadPictureTest, AnIconOfVeryManyEntriesIsReadAtOnce) {
  const QByteArray one = EncodedPicture(PlacePicture(32, 32), "ico");
  constexpr int entries = 65'535, directory = 6, entry = 16;
  QByteArray icon = one.left(directory);
  PutLittle(icon, 4, entries, 2);
  QByteArray pointer = one.mid(directory, entry);
  PutLittle(pointer, 12, directory + entry * entries, 4);
  icon += pointer.repeated(entries) + one.mid(directory + entry);
  const OwnTime taken;
  EXPECT_EQ(QSize(32, 32), PictureFromBytes(icon).size());
  EXPECT_TRUE(PictureFromBytes(icon.left(directory + entry * entries)).isNull());
  EXPECT_LT(taken.Seconds(), 5);
}

// What follows is sRGB all the way to the saved file, which tells no meaning of its colours.
TEST_F(ReadPictureTest, ColorsOfAnotherProfileAreBroughtToTheScreens) {
  struct Row {
    const char* name;
    QColorSpace space;
    QRgb stored;
    QRgb seen;
  };
  // By the published matrices and curves of these spaces.
  const Row rows[] = {{"P3", QColorSpace(QColorSpace::DisplayP3), qRgb(200, 100, 50), qRgb(215, 93, 31)},
                      {"Adobe RGB", QColorSpace(QColorSpace::AdobeRgb), qRgb(200, 100, 50), qRgb(227, 100, 42)},
                      {"sRGB", QColorSpace(QColorSpace::SRgb), qRgb(200, 100, 50), qRgb(200, 100, 50)}};
  for (const Row& row : rows) {
    for (const char* format : {"jpg", "png"}) {
      QImage image(32, 32, QImage::Format_RGB32);
      image.fill(row.stored);
      image.setColorSpace(row.space);
      const QColor read = PictureFromBytes(EncodedPicture(image, format)).pixelColor(16, 16);
      EXPECT_NEAR(qRed(row.seen), read.red(), 4) << row.name << ' ' << format;
      EXPECT_NEAR(qGreen(row.seen), read.green(), 4) << row.name << ' ' << format;
      EXPECT_NEAR(qBlue(row.seen), read.blue(), 4) << row.name << ' ' << format;
    }
  }
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
    EXPECT_EQ(compression != 0, IsWhole(bmp, PictureFormat::Bmp)) << int(compression);
    bmp.chop(1);
    EXPECT_FALSE(IsWhole(bmp, PictureFormat::Bmp)) << int(compression);
  }
}

TEST_F(ReadPictureTest, OfAFileWithFarMoreBehindItsPictureOnlyThePictureIsRead) {
  const QString path = File("large.bmp", EncodedPicture(PlacePicture(20, 15), "bmp"));
  QFile file(path);
  ASSERT_TRUE(file.resize(20'000'000'000));
  const OwnTime taken;
  EXPECT_EQ(QSize(20, 15), ReadPicture(path).size());
  EXPECT_TRUE(PictureFileBytes(path).isEmpty());
  EXPECT_LT(taken.Seconds(), 5);
}

}  // namespace
