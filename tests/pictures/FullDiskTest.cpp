// What the picture editor does on a disk that is full at each of its steps. Its scratch folder lies on a small disk of
// its own; see SmallDisk.sh.
#include <QDir>
#include <QRandomGenerator>
#include <QStorageInfo>

#include "PictureWindowFixture.h"

namespace {

constexpr QSize kSize(300, 200);
constexpr int kBitmapBytes = 54 + 300 * 200 * 3;

class FullDisk : public PictureWindowTest {
 protected:
  static void SetUpTestSuite() { ASSERT_LT(QStorageInfo(QDir::tempPath()).bytesTotal(), 4 << 20); }
  void SetUp() override {
    Choose(File("grain.bmp", EncodedPicture(Grain(), "bmp")));
    ASSERT_EQ(Grain(), Shown());
  }

  // Of which a JPEG is nearly as large as a bitmap.
  static QImage Grain() {
    QImage image(kSize, QImage::Format_RGB32);
    QRandomGenerator grain(7);
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x) image.setPixel(x, y, grain.generate() | 0xFF000000);
    return image;
  }

  void FillBut(qint64 bytes) {
    QFile filler(test_.Path("filler"));
    ASSERT_TRUE(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    for (const int block : {65536, 4096, 512, 1})
      while (filler.write(QByteArray(block, 'x')) == block) {
      }
    ASSERT_GT(filler.size(), bytes);
    ASSERT_TRUE(filler.resize(filler.size() - bytes));
  }
  void Free() { ASSERT_TRUE(QFile::remove(test_.Path("filler"))); }

  QStringList Names(const char* folder = "") const {
    return QDir(test_.Path(folder)).entryList(QDir::Files | QDir::Hidden);
  }
  void ExpectNoUndo(const QImage& shown) {
    window_.bUnDo->click();
    EXPECT_EQ(QStringList{"Only one level of undo."}, TakeMessages());
    EXPECT_EQ(shown, Shown());
  }
};

TEST_F(FullDisk, AJpegThatDoesNotFitIsToldAndTheOldFileStays) {
  const QString path = File("out.jpg", QByteArray(20'000, 'o'));
  // Room for the snapshot and a part of the JPEG, once with the old file's and once without.
  for (const bool replaced : {true, false}) {
    const QString target = replaced ? path : test_.Path("new.jpg");
    FillBut(kBitmapBytes + 60'000);
    const QStringList before = Names();
    window_.tJSz->setText("untouched");
    Save(target, {MessageAnswer::Ok});
    EXPECT_EQ(replaced ? (QStringList{StringText(105), StringText(104)}) : QStringList{StringText(104)},
              TakeMessages());
    EXPECT_EQ(QByteArray(20'000, 'o'), FileBytes(path));
    EXPECT_EQ(before, Names());
    EXPECT_EQ("untouched", window_.tJSz->text());
    EXPECT_EQ(Grain(), Shown());
    EXPECT_TRUE(viewer_.isVisible());
    Free();
    Save(target, {MessageAnswer::Ok});
    EXPECT_EQ(replaced ? QStringList{StringText(105)} : QStringList(), TakeMessages());
    EXPECT_EQ(JpegOf(Grain(), 100), FileBytes(target));
    EXPECT_TRUE(PutFile(path, QByteArray(20'000, 'o')));
    EXPECT_TRUE(QFile::remove(test_.Path("made.jpg")) && QFile::remove(test_.Path("made.bmp")));
  }
}

TEST_F(FullDisk, ASaveWithoutRoomForTheSnapshotIsToldAndTheOldFileStays) {
  const QString path = File("out.jpg", "old");
  FillBut(60'000);
  Save(path, {MessageAnswer::Ok});
  EXPECT_EQ((QStringList{StringText(105), StringText(104)}), TakeMessages());
  EXPECT_EQ("old", FileBytes(path));
  EXPECT_FALSE(Has("cvtemp.bmp"));
  EXPECT_EQ(Grain(), Shown());
}

TEST_F(FullDisk, ACopyOfTheLastJpegThatDoesNotFitIsToldAndTheOldFileStays) {
  const QString path = File("out.jpg", "old");
  Compress("90");
  const QImage shown = Shown();
  ASSERT_GT(QFileInfo(Scratch("cvtemp.jpg")).size(), 40'000);
  ASSERT_TRUE(QFile::remove(Scratch("cvtemp.bmp")));
  FillBut(20'000);
  const QStringList before = Names();
  Save(path, {MessageAnswer::Ok});
  EXPECT_EQ((QStringList{StringText(105), StringText(104)}), TakeMessages());
  EXPECT_EQ("old", FileBytes(path));
  EXPECT_EQ(before, Names());
  Free();
  Save(path, {MessageAnswer::Ok});
  EXPECT_EQ(JpegOf(shown, 100), FileBytes(path));
}

TEST_F(FullDisk, AResizeWithoutRoomForTheSnapshotCantBeTakenBack) {
  FillBut(60'000);
  Resize("50");
  EXPECT_TRUE(Messages().isEmpty());
  EXPECT_EQ(kSize / 2, Shown().size());
  EXPECT_FALSE(Has("cvtemp.bmp"));
  const QImage half = Shown();
  // Also with room again.
  Free();
  ExpectNoUndo(half);
  Resize("50");
  window_.bUnDo->click();
  EXPECT_EQ(half, Shown());
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(FullDisk, ACropWithoutRoomForTheSnapshotCantBeTakenBack) {
  Drag({10, 20}, {110, 80});
  FillBut(60'000);
  window_.bCrop->click();
  EXPECT_TRUE(Messages().isEmpty());
  const QImage part = Grain().copy(10, 20, 100, 60);
  EXPECT_EQ(part, Shown());
  EXPECT_FALSE(Has("cvtemp.bmp"));
  ExpectNoUndo(part);
}

TEST_F(FullDisk, ACompressThatDoesNotFitKeepsThePictureAndLeavesNoJpeg) {
  for (const int room : {60'000, kBitmapBytes + 20'000}) {
    FillBut(room);
    window_.tJSz->setText("untouched");
    Compress("95");
    EXPECT_TRUE(Messages().isEmpty());
    EXPECT_EQ(Grain(), Shown());
    EXPECT_FALSE(Has("cvtemp.jpg"));
    EXPECT_EQ(room > kBitmapBytes, Has("cvtemp.bmp"));
    EXPECT_EQ("untouched", window_.tJSz->text());
    Free();
    // The next save makes a JPEG of what is seen.
    Save(test_.Path("out.jpg"), {MessageAnswer::Ok});
    TakeMessages();
    EXPECT_EQ(JpegOf(Grain(), 100), FileBytes(test_.Path("out.jpg")));
    for (const char* name : {"made.bmp", "made.jpg"}) EXPECT_TRUE(QFile::remove(test_.Path(name)));
    EXPECT_TRUE(QFile::remove(Scratch("cvtemp.bmp")));
  }
}

TEST_F(FullDisk, UndoNeedsNoRoom) {
  Resize("50");
  FillBut(0);
  window_.bUnDo->click();
  EXPECT_EQ(Grain(), Shown());
  EXPECT_FALSE(Has("cvtemp.bmp"));
  EXPECT_TRUE(Messages().isEmpty());
}

}  // namespace
