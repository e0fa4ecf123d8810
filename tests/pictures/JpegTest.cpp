#include <unistd.h>

#include <QDir>

#include "PicturesFixture.h"

namespace {

class Jpeg : public PicturesTest {
 protected:
  bool Save(const char* name = "out.jpg") { return pics_.NView.SavePictureAsJpeg(test_.Path(name)); }
  // As the editor's window does it, which sets the flag whatever came out.
  void Compress(qint16 quality) {
    EXPECT_TRUE(pics_.NView.CompressPicture(quality));
    state_.JpegCurrent = true;
  }
  QByteArray Saved(const char* name = "out.jpg") const { return FileBytes(test_.Path(name)); }
  // The JPEG that a picture gives at a quality.
  QByteArray Made(const QImage& image, qint16 quality) {
    EXPECT_TRUE(image.save(test_.Path("made.bmp")));
    pics_.NView.MakeJpeg(test_.Path("made.bmp"), test_.Path("made.jpg"), quality);
    return Saved("made.jpg");
  }
  // A folder in a file's place stops whoever wants to write it.
  void Block(const char* name) { ASSERT_TRUE(QDir().mkpath(Scratch(name) + "/x")); }
};

TEST_F(Jpeg, APictureThatTheToolWindowShowsIsSavedAndNotTheOneThatWasCompressed) {
  Open(100, 80);
  Compress(50);
  ASSERT_TRUE(pics_.LoadPictureFile(File("b.bmp", EncodedPicture(PlacePicture(20, 15), "bmp")), 0));
  EXPECT_TRUE(Save());
  EXPECT_EQ(QSize(20, 15), PictureFromBytes(Saved()).size());
}

TEST_F(Jpeg, QualityCounts) {
  const QByteArray best = Made(PlacePicture(200, 150), 100), good = Made(PlacePicture(200, 150), 80),
                   poor = Made(PlacePicture(200, 150), 5);
  EXPECT_GT(best.size(), good.size());
  EXPECT_GT(good.size(), poor.size());
  for (const QByteArray& bytes : {best, good, poor}) EXPECT_EQ(QSize(200, 150), PictureFromBytes(bytes).size());
}

TEST_F(Jpeg, WithoutAPictureNoFileIsMade) {
  ASSERT_TRUE(PutFile(test_.Path("text.bmp"), "text"));
  for (const char* name : {"text.bmp", "missing.bmp"}) {
    pics_.NView.MakeJpeg(test_.Path(name), test_.Path("made.jpg"), 90);
    EXPECT_FALSE(QFile::exists(test_.Path("made.jpg")));
  }
}

TEST_F(Jpeg, CompressShowsWhatTheJpegMadeOfIt) {
  Open(200, 150);
  EXPECT_TRUE(pics_.NView.CompressPicture(10));
  EXPECT_EQ(Made(PlacePicture(200, 150), 10), FileBytes(Scratch("cvtemp.jpg")));
  EXPECT_EQ(ReadPicture(Scratch("cvtemp.jpg")).convertToFormat(QImage::Format_RGB32), Shown());
  EXPECT_NE(PlacePicture(200, 150), Shown());
  EXPECT_EQ(PlacePicture(200, 150), ReadPicture(Scratch("cvtemp.bmp")).convertToFormat(QImage::Format_RGB32));
  EXPECT_EQ(QString::number(QFileInfo(Scratch("cvtemp.jpg")).size() / 1024), tJSz_);
  pics_.UndoPicture();
  EXPECT_EQ(PlacePicture(200, 150), Shown());
  EXPECT_EQ("", tJSz_);
}

TEST_F(Jpeg, ASmallJpegShowsAsOne) {
  Open(4, 4);
  EXPECT_TRUE(pics_.NView.CompressPicture(50));
  ASSERT_LT(QFileInfo(Scratch("cvtemp.jpg")).size(), 1024);
  EXPECT_EQ("1", tJSz_);
}

TEST_F(Jpeg, CompressingTwiceCompressesTheCompressedPicture) {
  Open(200, 150);
  Compress(10);
  const QImage once = Shown();
  Compress(90);
  EXPECT_EQ(Made(once, 90), FileBytes(Scratch("cvtemp.jpg")));
  EXPECT_NE(Made(PlacePicture(200, 150), 90), FileBytes(Scratch("cvtemp.jpg")));
  pics_.UndoPicture();
  EXPECT_EQ(once, Shown());
}

TEST_F(Jpeg, CompressingLeavesTheFlagToItsCaller) {
  Open(60, 40);
  EXPECT_TRUE(pics_.NView.CompressPicture(50));
  EXPECT_FALSE(state_.JpegCurrent);
}

TEST_F(Jpeg, ACompressThatFailsIsSilentAndKeepsThePicture) {
  Open(60, 40);
  Block("cvtemp.jpg");
  EXPECT_FALSE(pics_.NView.CompressPicture(50));
  EXPECT_EQ("-", tJSz_);
  EXPECT_TRUE(Messages().isEmpty());
  EXPECT_EQ(PlacePicture(60, 40), Shown());
  pics_.UndoPicture();
  EXPECT_EQ(PlacePicture(60, 40), Shown());
}

TEST_F(Jpeg, ACompressWithoutSnapshotChangesNothing) {
  Open(60, 40);
  Block("cvtemp.bmp");
  // That of an earlier one goes all the same.
  ASSERT_TRUE(PutFile(Scratch("cvtemp.jpg"), "old"));
  EXPECT_FALSE(pics_.NView.CompressPicture(50));
  EXPECT_EQ(PlacePicture(60, 40), Shown());
  EXPECT_FALSE(Has("cvtemp.jpg"));
  EXPECT_FALSE(Save());
}

TEST_F(Jpeg, APictureNeverCompressedIsSavedAtQuality100) {
  Open(200, 150);
  EXPECT_TRUE(Save());
  EXPECT_EQ(Made(PlacePicture(200, 150), 100), Saved());
  EXPECT_EQ(QString::number(QFileInfo(test_.Path("out.jpg")).size() / 1024), tJSz_);
  EXPECT_EQ(PlacePicture(200, 150), Shown());
}

TEST_F(Jpeg, ACompressedPictureIsSavedByteForByteOnce) {
  Open(200, 150);
  Compress(30);
  const QByteArray compressed = FileBytes(Scratch("cvtemp.jpg"));
  const QImage shown = Shown();
  tJSz_ = "untouched";
  EXPECT_TRUE(Save());
  EXPECT_EQ(compressed, Saved());
  EXPECT_EQ("untouched", tJSz_);
  EXPECT_FALSE(state_.JpegCurrent);
  EXPECT_TRUE(Save());
  EXPECT_EQ(Made(shown, 100), Saved());
}

// Meant in ModNView::SavePictureAsJpeg: saving by copy takes the snapshot for Undo away.
TEST_F(Jpeg, SavingByCopyRemovesTheSnapshotAndUndoSaysSo) {
  Open(200, 150);
  Compress(30);
  const QImage shown = Shown();
  EXPECT_TRUE(Save());
  EXPECT_FALSE(Has("cvtemp.bmp"));
  pics_.UndoPicture();
  EXPECT_EQ(QStringList{"Only one level of undo."}, Messages());
  EXPECT_EQ(shown, Shown());
}

TEST_F(Jpeg, AfterSavingAnewUndoBringsBackTheSamePicture) {
  Open(200, 150);
  pics_.ResizePicture(50);
  const QImage shown = Shown();
  EXPECT_TRUE(Save());
  pics_.UndoPicture();
  EXPECT_EQ(shown, Shown());
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(Jpeg, ResizeAfterCompressIsSavedAnewAndNotFromTheStaleFile) {
  Open(200, 150);
  Compress(30);
  pics_.ResizePicture(50);
  state_.JpegCurrent = false;
  ASSERT_TRUE(Has("cvtemp.jpg"));
  const QImage shown = Shown();
  EXPECT_TRUE(Save());
  EXPECT_EQ(Made(shown, 100), Saved());
}

TEST_F(Jpeg, CompressUndoSaveWritesTheRestoredPicture) {
  Open(200, 150);
  Compress(30);
  pics_.UndoPicture();
  EXPECT_TRUE(Save());
  EXPECT_EQ(Made(PlacePicture(200, 150), 100), Saved());
}

TEST_F(Jpeg, TheOldFileGoesFirst) {
  Open(60, 40);
  ASSERT_TRUE(PutFile(test_.Path("out.jpg"), QByteArray(100000, 'x')));
  ASSERT_TRUE(test_.platform.attributes.Set(test_.Path("out.jpg"), AttributeReadOnly));
  EXPECT_TRUE(Save());
  EXPECT_EQ(Made(PlacePicture(60, 40), 100), Saved());
}

// A second name of the old file keeps what stood in it, however the new one is made.
TEST_F(Jpeg, TheOldFileIsDeletedAndNotWrittenOver) {
  Open(60, 40);
  for (const bool compressed : {false, true}) {
    if (compressed) Compress(50);
    const QString path = test_.Path("out.jpg"), second = test_.Path("second");
    ASSERT_TRUE(PutFile(path, "old"));
    ASSERT_EQ(0, ::link(qPrintable(path), qPrintable(second)));
    EXPECT_TRUE(Save());
    EXPECT_EQ("old", FileBytes(second));
    EXPECT_NE("old", Saved());
    ASSERT_TRUE(QFile::remove(second));
  }
}

TEST_F(Jpeg, ASaveThatFailsKeepsTheOldFile) {
  Open(60, 40);
  ASSERT_TRUE(PutFile(test_.Path("out.jpg"), "old"));
  // Without a snapshot there is nothing to be made into a JPEG.
  Block("cvtemp.bmp");
  tJSz_ = "untouched";
  EXPECT_FALSE(Save());
  EXPECT_EQ("old", Saved());
  EXPECT_EQ("untouched", tJSz_);
  EXPECT_EQ(PlacePicture(60, 40), Shown());
}

TEST_F(Jpeg, ASaveLeavesNothingElseBesideTheFile) {
  Open(60, 40);
  const QDir folder(test_.Path(""));
  const QStringList before = folder.entryList(QDir::Files | QDir::Hidden);
  EXPECT_TRUE(Save());
  EXPECT_EQ(before + QStringList{"out.jpg"}, folder.entryList(QDir::Files | QDir::Hidden));
  ASSERT_TRUE(QFile::remove(Scratch("cvtemp.bmp")));
  Block("cvtemp.bmp");
  EXPECT_FALSE(Save("second.jpg"));
  EXPECT_EQ(before + QStringList{"out.jpg"}, folder.entryList(QDir::Files | QDir::Hidden));
}

TEST_F(Jpeg, SavingOverTheLastJpegItselfMakesItAnew) {
  Open(60, 40);
  Compress(10);
  const QImage shown = Shown();
  EXPECT_TRUE(pics_.NView.SavePictureAsJpeg(Scratch("cvtemp.jpg")));
  EXPECT_EQ(Made(shown, 100), FileBytes(Scratch("cvtemp.jpg")));
}

TEST_F(Jpeg, SavingWhereNothingCanBeWrittenFails) {
  Open(60, 40);
  state_.JpegCurrent = true;
  tJSz_ = "untouched";
  EXPECT_FALSE(pics_.NView.SavePictureAsJpeg(test_.Path("no/such/folder/out.jpg")));
  EXPECT_EQ("untouched", tJSz_);
  EXPECT_FALSE(state_.JpegCurrent);
}

TEST_F(Jpeg, SavingOverTheScratchFilesThemselvesWorks) {
  Open(60, 40);
  const QByteArray wanted = Made(PlacePicture(60, 40), 100);
  for (const char* name : {"cvtemp.jpg", "cvtemp.bmp"}) {
    EXPECT_TRUE(pics_.NView.SavePictureAsJpeg(Scratch(name)));
    EXPECT_EQ(wanted, FileBytes(Scratch(name)));
  }
}

TEST_F(Jpeg, ABandOnShowGoesIntoTheJpeg) {
  OpenOneColor("white.bmp", Qt::white);
  Drag({5, 5}, {40, 30});
  EXPECT_TRUE(Save());
  EXPECT_LT(qGray(ReadPicture(test_.Path("out.jpg")).pixel(20, 5)), 100);
  EXPECT_GT(qGray(ReadPicture(test_.Path("out.jpg")).pixel(20, 15)), 200);
}

TEST_F(Jpeg, WhatIsSeeThroughIsSavedOnWhite) {
  const QString path = test_.Path("out.jpg");
  for (const bool seeThrough : {true, false}) {
    ASSERT_TRUE(pics_.OpenPictureFile(File("a.gif", GifFile(20, 20, {GifColor::Red}, seeThrough))));
    ASSERT_TRUE(!QFile::exists(path) || QFile::remove(path));
    ASSERT_TRUE(Save());
    const QColor saved = ReadPicture(path).pixelColor(10, 10);
    EXPECT_GT(saved.red(), 250);
    EXPECT_EQ(seeThrough, saved.green() > 250) << saved.green();
    EXPECT_EQ(seeThrough, saved.blue() > 250) << saved.blue();
  }
}

// Of the stripes of a drawing nothing runs into its neighbours.
TEST_F(Jpeg, AtQuality100EachPixelKeepsItsOwnColor) {
  QImage stripes(64, 64, QImage::Format_RGB32);
  for (int y = 0; y < 64; ++y)
    for (int x = 0; x < 64; ++x) stripes.setPixelColor(x, y, x % 2 == 0 ? Qt::red : Qt::blue);
  const auto red = [&](qint16 quality) { return PictureFromBytes(Made(stripes, quality)).pixelColor(31, 20); };
  EXPECT_LT(red(100).red(), 10);
  EXPECT_GT(red(100).blue(), 245);
  // Below that they are mixed, as in every photo.
  EXPECT_GT(red(99).red(), 50);
}

TEST_F(Jpeg, TheResolutionIsKept) {
  QImage image = PlacePicture(30, 20);
  image.setDotsPerMeterX(11800);
  image.setDotsPerMeterY(5900);
  const QImage made = PictureFromBytes(Made(image, 90));
  EXPECT_EQ(11800, made.dotsPerMeterX());
  EXPECT_EQ(5900, made.dotsPerMeterY());
}

TEST_F(Jpeg, NoSideIsLongerThanAJpegCanHave) {
  QImage strip(65'501, 2, QImage::Format_RGB32);
  strip.fill(Qt::blue);
  EXPECT_EQ("<missing>", Made(strip, 90));
  EXPECT_EQ(QSize(65'500, 2), PictureFromBytes(Made(strip.copy(0, 0, 65'500, 2), 90)).size());
}

}  // namespace
