#include "ModIcons2.h"

#include <QFileInfo>
#include <QMimeData>

#include "IconBytes.h"
#include "IconFilesFixture.h"
#include "IconReader.h"
#include "OwnTime.h"
#include "PictureFiles.h"
#include "Resource.h"
#include "StringTable.h"

namespace {

using IconFiles = IconFilesTest;

// --- writing

TEST_F(IconFiles, ASavedFileIs766BytesAndCanStandInAWebPack) {
  UseColor(Red);
  Use(Tool::SolidEllipse);
  Drag({4, 4}, {27, 27});
  const QByteArray bytes = Saved();
  EXPECT_EQ(766, bytes.size());
  EXPECT_EQ(744u, Number(bytes, 14, 4));
  EXPECT_EQ(22u, Number(bytes, 18, 4));
  EXPECT_EQ(0, Check(test_.Path("saved.ico")));
}

// Meant in IconFileBytes: the size of the data stands as 0 in a saved icon.
TEST_F(IconFiles, TheWriterLeavesTheSizeOfTheDataAt0) {
  EXPECT_EQ(0u, Number(Saved(), 42, 4));
}

TEST_F(IconFiles, ReadersDoNotCheckTheSizeOfTheData) {
  const QByteArray head = Saved().left(22);
  for (const char* name : {"HEART", "MAIL"}) {
    const QByteArray built = head + Resource(name);
    ASSERT_EQ(640u, Number(built, 42, 4));
    EXPECT_TRUE(OpenImageOf(built));
    const QByteArray again = Saved();
    EXPECT_EQ(0u, Number(again, 42, 4));
    // MAIL has a colour table of its own; heart and file have the same one.
    if (QByteArray(name) == "HEART") {
      EXPECT_EQ(built.mid(62), again.mid(62));
    }
    EXPECT_EQ(built.mid(638), again.mid(638));
    EXPECT_LT(200, Opaque().size());
    QByteArray strange = built;
    PutLittle(strange, 42, 0xFFFFFFFF, 4);
    EXPECT_TRUE(OpenImageOf(strange));
    EXPECT_EQ(again, Saved());
  }
}

TEST_F(IconFiles, AClearedImageSavedHasNoColorsAndNoOpaquePixel) {
  const QByteArray bytes = Saved();
  EXPECT_EQ(QByteArray(512, '\0'), bytes.mid(126, 512));
  EXPECT_EQ(QByteArray(128, '\xFF'), bytes.mid(638));
}

TEST_F(IconFiles, RowsComeFromTheBottomAndTheLeftPixelIsHigh) {
  UseColor(Red);
  Drag({0, 31}, {0, 31});
  UseColor(Blue);
  Drag({31, 0}, {31, 0});
  const QByteArray bytes = Saved();
  EXPECT_EQ('\x90', bytes[126]);
  EXPECT_EQ('\x0C', bytes[126 + 511]);
  EXPECT_EQ('\x7F', bytes[638]);
  EXPECT_EQ('\xFE', bytes[765]);
}

TEST_F(IconFiles, WhatIsSavedOpensAsItWas) {
  UseColor(Yellow);
  Use(Tool::Ellipse);
  Drag({4, 2}, {27, 30});
  const QByteArray bytes = Saved();
  const QImage colors = Plane(planes_.Pic1Black), mask = Plane(planes_.Pic2);
  Open(test_.Path("saved.ico"));
  EXPECT_EQ(colors, Plane(planes_.Pic1Black));
  EXPECT_EQ(mask, Plane(planes_.Pic2));
  EXPECT_EQ(bytes, Saved("again.ico"));
  EXPECT_TRUE(Messages().isEmpty());
}

// Meant in WriteIconFile: writing over a longer file doesn't shorten it.
TEST_F(IconFiles, WritingDoesNotShortenALongerFile) {
  File("long.ico", QByteArray(1000, 'x'));
  // Without the suffix, so that nobody asks and nobody deletes.
  SaveAs(test_.Path("long"));
  const QByteArray bytes = FileBytes(test_.Path("long.ico"));
  EXPECT_EQ(1000, bytes.size());
  EXPECT_EQ(Saved(), bytes.left(766));
  EXPECT_EQ(QByteArray(234, 'x'), bytes.mid(766));
  EXPECT_EQ(6, Check(test_.Path("long.ico")));
}

// Meant in WriteIconFile: a write that fails says nothing.
TEST_F(IconFiles, AWriteThatFailsIsSilent) {
  WriteIconFile(editor_.Surfaces, test_.Path("no/such/folder.ico"));
  WriteIconFile(editor_.Surfaces, QString());
  WriteIconFile(editor_.Surfaces, QFileInfo(test_.Path("x")).path());
  EXPECT_TRUE(Messages().isEmpty());
}

// --- opening

TEST_F(IconFiles, APictureIsOpaqueOverItsSizeAndSeeThroughBeyond) {
  Open(Bmp(10, 10));
  EXPECT_EQ(QRect(0, 0, 10, 10), OpaqueRect());
  EXPECT_EQ(100, Opaque().size());
  Open(Bmp(40, 40));
  EXPECT_EQ(1024, Opaque().size());
  Open(Bmp(5, 60));
  EXPECT_EQ(QRect(0, 0, 5, 32), OpaqueRect());
  Open(Bmp(32, 32));
  EXPECT_EQ(1024, Opaque().size());
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(IconFiles, ALargePictureIsCutToItsTopLeft) {
  QImage picture = Picture(40, 40, Qt::black);
  picture.setPixelColor(31, 31, Qt::white);
  picture.setPixelColor(32, 32, Qt::white);
  Open(File("p.bmp", EncodedPicture(picture, "bmp")));
  EXPECT_EQ(qRgb(255, 255, 255), Plane(planes_.Pic1Black).pixel(31, 31));
  EXPECT_EQ(qRgb(0, 0, 0), Plane(planes_.Pic1Black).pixel(0, 0));
  EXPECT_EQ(Enlarged(Plane(planes_.Pic1)), Plane(planes_.PicBig));
}

TEST_F(IconFiles, ColorsBecomeTheNearestOfThe16) {
  QImage picture = Picture(4, 1);
  picture.setPixel(0, 0, qRgb(120, 10, 0));
  picture.setPixel(1, 0, qRgb(200, 200, 200));
  picture.setPixel(2, 0, qRgb(0, 200, 255));
  picture.setPixel(3, 0, qRgb(64, 64, 64));
  Open(File("p.bmp", EncodedPicture(picture, "bmp")));
  const QImage colors = Plane(planes_.Pic1Black);
  EXPECT_EQ(qRgb(0x80, 0, 0), colors.pixel(0, 0));
  EXPECT_EQ(qRgb(0xC0, 0xC0, 0xC0), colors.pixel(1, 0));
  EXPECT_EQ(qRgb(0, 0xFF, 0xFF), colors.pixel(2, 0));
  EXPECT_EQ(qRgb(0, 0, 0), colors.pixel(3, 0));  // as near to dark grey, which comes later
}

// Meant in OpenImage: see-through pixels of an opened icon are white on the screen; the mask alone tells them.
TEST_F(IconFiles, AfterOpeningSeeThroughPixelsAreWhiteOnScreenAndOnlyTheMaskCounts) {
  ASSERT_TRUE(OpenImageOf(IconFileOf({BitmapImage(HalfRed(32), 4)})));
  EXPECT_EQ(PixelOf(0xFFFFFF), Plane(planes_.Pic1).pixel(0, 0));
  EXPECT_NE(PixelOf(TransparentColor), Plane(planes_.Pic1).pixel(0, 0));
  EXPECT_EQ(PixelOf(0xFFFFFF), Plane(planes_.Pic2).pixel(0, 0));
  EXPECT_EQ(PixelOf(0xFFFFFF), Plane(planes_.PicBig).pixel(0, 0));
  ExpectHalfRed();
  // What is drawn afterwards keeps the see-through colour.
  UseSeeThrough();
  Drag({20, 20}, {20, 20});
  EXPECT_EQ(PixelOf(TransparentColor), Plane(planes_.Pic1).pixel(20, 20));
}

TEST_F(IconFiles, APictureOf10By10ShowsWhiteBesideIt) {
  Open(Bmp(10, 10));
  EXPECT_EQ(PixelOf(0xFFFFFF), Plane(planes_.Pic1).pixel(20, 20));
  EXPECT_EQ(PixelOf(0), Plane(planes_.Pic1Black).pixel(20, 20));
}

TEST_F(IconFiles, IconsOfEveryDepthOpen) {
  for (const int bits : {1, 4, 8, 24, 32}) {
    if (bits == 1) {
      QImage two = HalfRed(32);
      two.setPixel(31, 31, qRgb(255, 0, 0));
      EXPECT_TRUE(OpenImageOf(IconFileOf({BitmapImage(two, 1)})));
      EXPECT_EQ(512, Opaque().size());
      EXPECT_EQ(qRgb(255, 0, 0), Plane(planes_.Pic1Black).pixel(31, 31));
      continue;
    }
    EXPECT_TRUE(OpenImageOf(IconFileOf({BitmapImage(HalfRed(32), bits)}))) << bits;
    ExpectHalfRed();
  }
}

TEST_F(IconFiles, IconsOfOtherSizesAreNotRefusedButBroughtTo32By32) {
  for (const int side : {16, 48, 64, 128}) {
    EXPECT_TRUE(OpenImageOf(IconFileOf({BitmapImage(HalfRed(side), 32)}))) << side;
    EXPECT_EQ(QRect(16, 0, 16, 32), OpaqueRect()) << side;
    EXPECT_EQ(qRgb(255, 0, 0), Plane(planes_.Pic1Black).pixel(20, 20));
    EXPECT_EQ(qRgb(0, 0, 0), Plane(planes_.Pic1Black).pixel(15, 20));
    EXPECT_EQ(766, Saved().size());
  }
}

TEST_F(IconFiles, OfSeveralImagesThatOf32By32Counts) {
  const QImage blue = Picture(48, 48, Qt::blue).convertToFormat(QImage::Format_ARGB32);
  EXPECT_TRUE(OpenImageOf(
      IconFileOf({BitmapImage(blue, 8), BitmapImage(blue.scaled(16, 16), 4), BitmapImage(HalfRed(32), 32)})));
  ExpectHalfRed();
}

TEST_F(IconFiles, WithoutOneOf32By32TheFirstImageCounts) {
  const QImage blue = Picture(48, 48, Qt::blue).convertToFormat(QImage::Format_ARGB32);
  EXPECT_TRUE(OpenImageOf(IconFileOf({BitmapImage(HalfRed(16), 8), BitmapImage(blue, 8)})));
  EXPECT_EQ(QRect(16, 0, 16, 32), OpaqueRect());
}

TEST_F(IconFiles, TheEntrysOwnSizeMayBeWrong) {
  QByteArray file = IconFileOf({BitmapImage(HalfRed(32), 4)});
  file[6] = 16;
  file[7] = '\xFF';
  EXPECT_TRUE(OpenImageOf(file));
  ExpectHalfRed();
}

TEST_F(IconFiles, AnIconWithoutAReadableMaskIsToldAndWhollySeeThrough) {
  QByteArray cut = IconFileOf({BitmapImage(HalfRed(32), 24)});
  cut.chop(64);
  PutLittle(cut, 14, quint32(cut.size() - 22), 4);
  Open(File("cut.ico", cut));
  EXPECT_EQ(QStringList{StringText(144)}, Messages());
  EXPECT_EQ(MessageIcon::Information, test_.platform.dialogs.Boxes.last().icon);
  EXPECT_EQ(MessageButtons::Ok, test_.platform.dialogs.Boxes.last().buttons);
  EXPECT_EQ(&editor_, test_.platform.dialogs.Boxes.last().owner);
  EXPECT_TRUE(Opaque().isEmpty());
  // The title is that of an icon all the same.
  EXPECT_EQ(test_.Path("cut.ico"), editor_.IconFileName);
}

// Today's icons: what is see-through tells their own transparency.
TEST_F(IconFiles, AnIconStoredAsPngIsSeeThroughWhereNothingOfItIs) {
  for (const int side : {32, 256}) {
    EXPECT_TRUE(OpenImageOf(PngIcon({HalfRed(side)}))) << side;
    EXPECT_EQ(QRect(16, 0, 16, 32), OpaqueRect()) << side;
    EXPECT_EQ(qRgb(255, 0, 0), Plane(planes_.Pic1Black).pixel(20, 20)) << side;
    EXPECT_EQ(qRgb(0, 0, 0), Plane(planes_.Pic1Black).pixel(5, 5)) << side;
  }
  // Whatever is to be seen a little is there, on black.
  QImage faint(32, 32, QImage::Format_ARGB32);
  faint.fill(qRgba(255, 255, 255, 1));
  faint.setPixel(0, 0, qRgba(0, 0, 0, 0));
  EXPECT_TRUE(OpenImageOf(PngIcon({faint})));
  EXPECT_EQ(1023, Opaque().size());
  // One without transparency is opaque all over.
  EXPECT_TRUE(OpenImageOf(PngIcon({Picture(256, 256)})));
  EXPECT_EQ(1024, Opaque().size());
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(IconFiles, AnIconStoredAsPngCanBeSavedAndOpenedAgain) {
  Open(File("png.ico", PngIcon({HalfRed(256)})));
  const QList<QImage> before = AllPlanes();
  const QByteArray saved = Saved();
  EXPECT_EQ(766, saved.size());
  EXPECT_TRUE(OpenImageOf(saved));
  EXPECT_EQ(before, AllPlanes());
}

TEST_F(IconFiles, OfSeveralImagesThatOf32By32CountsThoughItIsAPng) {
  EXPECT_TRUE(OpenImageOf(PngIcon({Picture(48, 48, Qt::blue), HalfRed(32), Picture(16, 16, Qt::blue)})));
  ExpectHalfRed();
}

TEST_F(IconFiles, ADamagedPngIsNoIcon) {
  QByteArray cut = PngIcon({HalfRed(32)});
  cut.chop(30);
  PutLittle(cut, 14, quint32(cut.size() - 22), 4);
  Open(File("cut.ico", cut));
  EXPECT_EQ(QStringList{StringText(144)}, Messages());
  EXPECT_TRUE(IsBlank());
}

// An image of 32 bits whose mask says nothing, or isn't there, has its own transparency.
TEST_F(IconFiles, AnIconOf32BitsWithAnEmptyMaskIsSeeThroughWhereNothingOfItIs) {
  constexpr int maskBytes = 128;
  QByteArray empty = IconFileOf({BitmapImage(HalfRed(32), 32)});
  empty.replace(empty.size() - maskBytes, maskBytes, QByteArray(maskBytes, '\0'));
  EXPECT_TRUE(OpenImageOf(empty));
  ExpectHalfRed();
  QByteArray missing = empty.chopped(maskBytes);
  PutLittle(missing, 14, quint32(missing.size() - 22), 4);
  EXPECT_TRUE(OpenImageOf(missing));
  ExpectHalfRed();
}

TEST_F(IconFiles, AMaskThatSaysSomethingCountsMoreThanTheTransparency) {
  constexpr int maskBytes = 128;
  QByteArray file = IconFileOf({BitmapImage(HalfRed(32), 32)});
  // The lowest row alone is see-through, the right half of whose pixels has colours.
  file.replace(file.size() - maskBytes, maskBytes, QByteArray(4, '\xFF') + QByteArray(maskBytes - 4, '\0'));
  EXPECT_TRUE(OpenImageOf(file));
  EXPECT_EQ(QRect(0, 0, 32, 31), OpaqueRect());
}

// As some programs leave it.
TEST_F(IconFiles, AnUnusedTransparencyMakesNothingSeeThrough) {
  constexpr int headers = 22 + 40;
  QByteArray file = IconFileOf({BitmapImage(HalfRed(32), 32)});
  for (int pixel = 0; pixel < 1024; ++pixel) file[headers + 4 * pixel + 3] = '\0';
  EXPECT_TRUE(OpenImageOf(file));
  ExpectHalfRed();
  file.replace(file.size() - 128, 128, QByteArray(128, '\0'));
  EXPECT_TRUE(OpenImageOf(file));
  EXPECT_EQ(1024, Opaque().size());
  EXPECT_EQ(qRgb(255, 0, 0), Plane(planes_.Pic1Black).pixel(20, 20));
}

TEST_F(IconFiles, AnIconOfVeryManyEntriesIsOpenedAtOnce) {
  constexpr int entries = 65'535, directory = 6, entry = 16, padding = 1'000'000;
  const QByteArray one = IconFileOf({BitmapImage(HalfRed(48), 8)});
  QByteArray icon = one.left(directory);
  PutLittle(icon, 4, entries, 2);
  QByteArray pointer = one.mid(directory, entry);
  // Each of them long, and none of the wanted size.
  PutLittle(pointer, 8, quint32(one.size() - directory - entry + padding), 4);
  PutLittle(pointer, 12, directory + entry * entries, 4);
  icon += pointer.repeated(entries) + one.mid(directory + entry) + QByteArray(padding, 'x');
  const OwnTime taken;
  EXPECT_TRUE(OpenImageOf(icon));
  EXPECT_EQ(QRect(16, 0, 16, 32), OpaqueRect());
  EXPECT_LT(taken.Seconds(), 5);
}

// Meant in OpenImage: a name that ends in "ico" without a dot is opened as an icon.
TEST_F(IconFiles, ANameThatEndsInIcoWithoutADotIsOpenedAsAnIcon) {
  for (const char* name : {"myico", "MyIcO", "x.ICO"}) {
    EXPECT_TRUE(OpenImageOf(IconFileOf({BitmapImage(HalfRed(32), 4)}), name));
    EXPECT_EQ(512, Opaque().size());
  }
  // By another name it is a picture, and opaque.
  EXPECT_TRUE(OpenImageOf(IconFileOf({BitmapImage(HalfRed(32), 4)}), "icon.bmp"));
  EXPECT_EQ(1024, Opaque().size());
}

TEST_F(IconFiles, APictureNamedAsAnIconHasNoMask) {
  Open(File("wrong.ico", EncodedPicture(Picture(32, 32), "bmp")));
  EXPECT_EQ(QStringList{StringText(144)}, Messages());
  EXPECT_TRUE(Opaque().isEmpty());
  EXPECT_EQ(qRgb(255, 0, 0), Plane(planes_.Pic1Black).pixel(0, 0));
}

TEST_F(IconFiles, TheContentTellsTheKindOfAPicture) {
  for (const PictureSample& sample : PictureSamples()) {
    const QImage read = QImage::fromData(sample.bytes);
    Open(File("any.jpg", sample.bytes));
    const QRect wanted = QRect(0, 0, 32, 32) & (QByteArray(sample.name) == "turned jpg" ? QRect(0, 0, 50, 70)
                                                : QByteArray(sample.name) == "ico"      ? QRect(0, 0, 32, 32)
                                                                                        : read.rect());
    EXPECT_EQ(wanted, OpaqueRect()) << sample.name;
    EXPECT_TRUE(Messages().isEmpty()) << sample.name;
  }
}

TEST_F(IconFiles, WhatIsNoPictureLeavesABlankEditor) {
  UseColor(Red);
  for (const QByteArray& bytes :
       {QByteArray(), QByteArray("text"), QByteArray(5000, '\0'), EncodedPicture(Picture(20, 20), "bmp").left(300),
        EncodedPicture(Picture(50, 50), "jpg").left(200), EncodedPicture(Picture(20, 20), "png").left(40),
        QByteArray("BM") + QByteArray(60, '\xFF')}) {
    Drag({3, 3}, {20, 20});
    Open(File("broken.bmp", bytes));
    EXPECT_TRUE(IsBlank());
    EXPECT_FALSE(UndoEnabled());
    EXPECT_TRUE(Messages().isEmpty());
  }
  Drag({3, 3}, {20, 20});
  Open(File("broken.ico", "text"));
  EXPECT_TRUE(IsBlank());
  EXPECT_EQ(QStringList{StringText(144)}, Messages());
}

TEST_F(IconFiles, APictureWithHugeClaimsIsNone) {
  QByteArray bmp = EncodedPicture(Picture(20, 20), "bmp");
  PutLittle(bmp, 18, 0x7FFFFFFF, 4);
  PutLittle(bmp, 22, 0x7FFFFFFF, 4);
  Open(File("huge.bmp", bmp));
  EXPECT_TRUE(IsBlank());
  QByteArray ico = IconFileOf({BitmapImage(HalfRed(32), 4)});
  PutLittle(ico, 26, 0x7FFFFFFF, 4);
  EXPECT_FALSE(OpenImageOf(ico));
  EXPECT_TRUE(Opaque().isEmpty());
  PutLittle(ico, 26, 32, 4);
  PutLittle(ico, 54, 0x7FFFFFFF, 4);  // entries of the colour table
  EXPECT_FALSE(OpenImageOf(ico));
  EXPECT_TRUE(Opaque().isEmpty());
  PutLittle(ico, 54, 0, 4);
  PutLittle(ico, 18, 0xFFFFFFF0, 4);  // where the image begins
  EXPECT_FALSE(OpenImageOf(ico));
  EXPECT_TRUE(IsBlank());
  // Images that aren't there are passed over.
  PutLittle(ico, 18, 22, 4);
  PutLittle(ico, 4, 0xFFFF, 2);
  EXPECT_TRUE(OpenImageOf(ico));
  ExpectHalfRed();
}

TEST_F(IconFiles, AFolderOrAMissingFileIsNoPicture) {
  EXPECT_TRUE(OpenImage(editor_.Surfaces, test_.Path("nothing.bmp")));
  EXPECT_FALSE(OpenImage(editor_.Surfaces, test_.Path("nothing.ico")));
  EXPECT_TRUE(OpenImage(editor_.Surfaces, QFileInfo(test_.Path("x")).path()));
  EXPECT_TRUE(IsBlank());
}

// --- the mask

TEST_F(IconFiles, TheMaskIsHardenedByPlainNumbersInWhichBlueCountsMost) {
  struct Row {
    qint32 color;
    qint32 hard;
  };
  constexpr Row rows[] = {{0x000000, 0x000000}, {0x808080, 0x000000}, {0xFEFEFE, 0x000000}, {0xFEFEFF, 0xFFFFFF},
                          {0xFFFFFF, 0xFFFFFF}, {0xFF0000, 0xFFFFFF}, {0xFEFFFF, 0xFFFFFF}, {0xFEFDFF, 0x000000},
                          {0xFDFFFF, 0x000000}, {0x00FFFF, 0x000000}, {0xFEFF00, 0xFFFFFF}};
  QImage mask = OneColor(PixelOf(0));
  for (int x = 0; x < int(std::size(rows)); ++x) mask.setPixel(x, 7, PixelOf(rows[x].color));
  editor_.Surfaces.Pic2->SetPicture(mask);
  HardenMask(*editor_.Surfaces.Pic2);
  for (int x = 0; x < int(std::size(rows)); ++x)
    EXPECT_EQ(PixelOf(rows[x].hard), Plane(planes_.Pic2).pixel(x, 7)) << std::hex << rows[x].color;
}

// --- pasting

TEST_F(IconFiles, AMaskBeginsBehindTheColorsThatTheFileSaysAndTheMasksOfItsColors) {
  const auto number = [](QByteArray& bytes, int at, char value) { bytes[at] = value; };
  const QByteArray of256 = BitmapImage(HalfRed(32), 8);
  const auto mask = MaskOfIcon(IconFileOf(QList<QByteArray>{of256}));
  ASSERT_TRUE(mask && mask->pixel(0, 0) != mask->pixel(31, 0));
  QByteArray of3 = of256;
  of3.remove(40 + 4 * 3, 4 * 253);
  number(of3, 32, 3);
  EXPECT_EQ(mask, MaskOfIcon(IconFileOf(QList<QByteArray>{of3})));
  QByteArray bitFields = BitmapImage(HalfRed(32), 32);
  bitFields.insert(40, QByteArray::fromHex("0000ff0000ff0000ff000000"));
  number(bitFields, 16, 3);
  EXPECT_EQ(mask, MaskOfIcon(IconFileOf(QList<QByteArray>{bitFields})));
}

TEST_F(IconFiles, TheMaskOfAnImageOf32BitsPlaysNoPartInItsColors) {
  QByteArray image = BitmapImage(Picture(32, 32).convertToFormat(QImage::Format_ARGB32), 32);
  ASSERT_EQ(40 + 32 * 32 * 4 + 128, image.size());
  image.replace(image.size() - 128, 128, QByteArray(128, '\xFF'));
  EXPECT_EQ(qRgb(255, 0, 0), PictureForIcon(IconFileOf(QList<QByteArray>{image})).pixel(5, 5));
}

}  // namespace
