// What becomes of pictures for which there isn't enough memory: the process gets a limit, as a user can set one.
#include <sys/resource.h>

#include "FreeMemory.h"
#include "PictureBounds.h"
#include "PictureWindowFixture.h"

// The sanitizers take terabytes of addresses for themselves.
#if defined(__SANITIZE_ADDRESS__)
#define WITH_SANITIZERS true
#else
#define WITH_SANITIZERS false
#endif

namespace {

class LittleMemory : public PictureWindowTest {
 protected:
  void SetUp() override {
    if (WITH_SANITIZERS) GTEST_SKIP() << "the sanitizers need all addresses that there are";
    ASSERT_EQ(0, getrlimit(RLIMIT_AS, &before_));
  }
  void TearDown() override {
    if (!WITH_SANITIZERS) setrlimit(RLIMIT_AS, &before_);
  }
  // So many bytes more than the process has, and no more.
  void Leave(qint64 bytes) {
    rlimit limit = before_;
    limit.rlim_cur = 0;
    QFile statm("/proc/self/statm");
    ASSERT_TRUE(statm.open(QIODevice::ReadOnly));
    limit.rlim_cur = rlim_t(statm.readAll().split(' ')[0].toLongLong() * 4096 + bytes);
    ASSERT_EQ(0, setrlimit(RLIMIT_AS, &limit));
  }

 private:
  rlimit before_{};
};

constexpr qint64 kMegabyte = 1 << 20;

TEST_F(LittleMemory, TheLimitOfTheProcessCounts) {
  EXPECT_LT(500 * kMegabyte, FreeMemory());
  Leave(300 * kMegabyte);
  EXPECT_LE(FreeMemory(), 300 * kMegabyte);
  EXPECT_GT(FreeMemory(), 200 * kMegabyte);
  EXPECT_TRUE(IsHoldableSize({5000, 5000}));   // 200 MB with its copy
  EXPECT_FALSE(IsHoldableSize({7000, 7000}));  // 392 MB
}

TEST_F(LittleMemory, APictureThatIsTooLargeIsTold) {
  QImage large(7000, 7000, QImage::Format_Mono);
  large.fill(0);
  const QString path = File("large.bmp", EncodedPicture(large, "bmp"));
  Leave(300 * kMegabyte);
  Choose(path);
  ExpectBox("Error loading image file.");
  ChoosePicture(100, 80);
  EXPECT_EQ(PlacePicture(100, 80), Shown());
}

TEST_F(LittleMemory, EnlargingBeyondItIsToldAndChangesNothing) {
  ChoosePicture(1000, 800);
  Compress("50");
  const QImage shown = Shown();
  const QByteArray snapshot = FileBytes(Scratch("cvtemp.bmp"));
  Leave(300 * kMegabyte);
  Resize("1000");
  ExpectBox("Must be a number greater than 10 and not 100.");
  EXPECT_EQ(shown, Shown());
  EXPECT_EQ(snapshot, FileBytes(Scratch("cvtemp.bmp")));
  EXPECT_TRUE(state_.JpegCurrent);
  Resize("200");
  EXPECT_EQ(QSize(2000, 1600), Shown().size());
  EXPECT_FALSE(state_.JpegCurrent);
}

TEST_F(LittleMemory, AnUndoForWhichItIsTooLittleKeepsPictureAndSnapshot) {
  ChoosePicture(7000, 5000);
  Resize("10");
  const QImage small = Shown();
  Leave(150 * kMegabyte);
  window_.bUnDo->click();
  ExpectBox("Only one level of undo.");
  EXPECT_EQ(small, Shown());
  TearDown();
  window_.bUnDo->click();
  EXPECT_EQ(QSize(7000, 5000), Shown().size());
}

}  // namespace
