#include <QCloseEvent>
#include <climits>

#include "PicturesFixture.h"

namespace {

class Viewer : public PicturesTest {
 protected:
  // What the platform puts around a window that has been shown.
  static QSize BorderOf(const QWidget& window) { return window.frameGeometry().size() - window.size(); }
};

TEST_F(Viewer, IsMadeHiddenWithItsSurfaces) {
  EXPECT_EQ("fBitmap", viewer_.objectName());
  EXPECT_EQ("Use This Picture?", Caption());
  EXPECT_FALSE(viewer_.isVisible());
  EXPECT_EQ("Pic", viewer_.Pic->objectName());
  EXPECT_EQ("PicX", viewer_.PicX->objectName());
  EXPECT_TRUE(viewer_.PicX->isHidden());
  EXPECT_TRUE(viewer_.testAttribute(Qt::WA_ShowWithoutActivating));
}

TEST_F(Viewer, ASmallPictureStandsInTheMiddleOfTheFreeSpace) {
  EXPECT_FALSE(pics_.SizeViewer(200, 101, 1500, "caption"));
  EXPECT_EQ("caption", Caption());
  EXPECT_EQ(QSize(200, 101), viewer_.size());
  // 567 pixels are left over, half of them lie above: 283.5 goes to the even 284.
  EXPECT_EQ(QPoint((1024 - 200) / 2, 284), viewer_.pos());
  EXPECT_EQ(QPoint(0, 0), viewer_.Pic->pos());
  EXPECT_EQ(QPoint(0, 0), viewer_.PicX->pos());
}

TEST_F(Viewer, AnEmptyTitleLeavesTheCaption) {
  viewer_.setWindowTitle("before");
  pics_.SizeViewer(20, 10, 0, "");
  EXPECT_EQ("before", Caption());
}

TEST_F(Viewer, AWindowCutByHeightIsCroppedAndStandsAt400Twips) {
  EXPECT_TRUE(pics_.SizeViewer(200, 669, 1500, "caption"));
  EXPECT_EQ(kCutCaption, Caption());
  EXPECT_EQ(QSize(200, 668), viewer_.size());
  EXPECT_EQ(27, viewer_.y());
  EXPECT_FALSE(pics_.SizeViewer(200, 668, 1500, "caption"));
  EXPECT_EQ("caption", Caption());
  EXPECT_EQ(0, viewer_.y());
}

// Meant in ModPics::SizeViewer: a window that had to be cut in its width doesn't count as cropped.
TEST_F(Viewer, AWindowCutByWidthDoesNotCountAsCropped) {
  EXPECT_FALSE(pics_.SizeViewer(3000, 100, 1500, "caption"));
  EXPECT_EQ(kCutCaption, Caption());
  // 90 percent of the screen, 921.6 pixels.
  EXPECT_EQ(QSize(922, 100), viewer_.size());
  EXPECT_EQ(51, viewer_.x());
  EXPECT_EQ((668 - 100) / 2, viewer_.y());
  EXPECT_FALSE(pics_.SizeViewer(921, 100, 1500, "caption"));
  EXPECT_EQ("caption", Caption());
  EXPECT_FALSE(pics_.SizeViewer(922, 100, 1500, "caption"));
  EXPECT_EQ(kCutCaption, Caption());
}

TEST_F(Viewer, ExactlyNineTenthsOfTheScreenAndExactlyTheFreeHeightAreNoCuts) {
  // 900 pixels are exactly 90 percent of this one.
  pics_.Screen = [] { return QRect(0, 0, 1000, 768); };
  EXPECT_FALSE(pics_.SizeViewer(900, 668, 1500, "caption"));
  EXPECT_EQ("caption", Caption());
  EXPECT_EQ(QSize(900, 668), viewer_.size());
  EXPECT_EQ(QPoint(50, 0), viewer_.pos());
  EXPECT_FALSE(pics_.SizeViewer(901, 668, 1500, "caption"));
  EXPECT_EQ(kCutCaption, Caption());
  EXPECT_EQ(QSize(900, 668), viewer_.size());
}

TEST_F(Viewer, BothCutsTogether) {
  EXPECT_TRUE(pics_.SizeViewer(5000, 5000, 1500, "caption"));
  EXPECT_EQ(QSize(922, 668), viewer_.size());
  EXPECT_EQ(QPoint(51, 27), viewer_.pos());
}

TEST_F(Viewer, OnAScreenBesideAnotherItStandsOnThatOne) {
  pics_.Screen = [] { return QRect(1920, -200, 1024, 768); };
  EXPECT_FALSE(pics_.SizeViewer(200, 100, 1500, "caption"));
  EXPECT_EQ(QPoint(1920 + (1024 - 200) / 2, -200 + (668 - 100) / 2), viewer_.pos());
  EXPECT_TRUE(pics_.SizeViewer(5000, 5000, 1500, "caption"));
  EXPECT_EQ(QSize(922, 668), viewer_.size());
  EXPECT_EQ(QPoint(1920 + 51, -200 + 27), viewer_.pos());
}

TEST_F(Viewer, TheScreenIsThatOfItsOwner) {
  ModPics pics(test_.program, viewer_);
  EXPECT_EQ(QGuiApplication::primaryScreen()->geometry(), pics.Screen());
  QWidget owner;
  owner.winId();
  viewer_.TieTo(&owner);
  EXPECT_EQ(owner.windowHandle(), viewer_.Owner());
  EXPECT_EQ(owner.screen()->geometry(), pics.Screen());
  viewer_.TieTo(nullptr);
  EXPECT_EQ(nullptr, viewer_.Owner());
}

TEST_F(Viewer, ACaptionShowsAPathAsItIs) {
  const QString path = File("odd [*] name.bmp", EncodedPicture(PlacePicture(20, 10), "bmp"));
  EXPECT_TRUE(pics_.OpenPictureFile(path));
  // What the window library makes of the caption.
  EXPECT_EQ(path, viewer_.windowHandle()->title());
}

// The first picture of a run is sized like all others.
TEST_F(Viewer, TheBorderOfAnotherWindowCountsUntilTheWindowHasBeenShown) {
  EXPECT_EQ(QSize(0, 0), viewer_.Border());
  QWidget other;
  other.show();
  QApplication::processEvents();
  ASSERT_LT(0, BorderOf(other).height());
  EXPECT_EQ(BorderOf(other), viewer_.Border());
  EXPECT_TRUE(pics_.SizeViewer(200, 768 - BorderOf(other).height() + 1, 0, "caption"));
  EXPECT_EQ(768 - BorderOf(other).height(), viewer_.height());
}

TEST_F(Viewer, TheBorderCounts) {
  Open(200, 100);
  QApplication::processEvents();
  const QSize border = BorderOf(viewer_);
  pics_.SizeViewer(200, 100, 0, "caption");
  EXPECT_EQ(QSize(200, 100), viewer_.size());
  EXPECT_EQ((1024 - 200 - border.width()) / 2, viewer_.x());
  EXPECT_TRUE(pics_.SizeViewer(200, 768 - border.height() + 1, 0, "caption"));
  EXPECT_EQ(768 - border.height(), viewer_.height());
}

TEST_F(Viewer, NoSizeIsTooOdd) {
  EXPECT_TRUE(pics_.SizeViewer(INT_MAX, INT_MAX, 0, ""));
  EXPECT_EQ(QSize(922, 768), viewer_.size());
  EXPECT_FALSE(pics_.SizeViewer(0, 0, 0, ""));
  EXPECT_TRUE(pics_.SizeViewer(10, 10, 1e6, ""));
  EXPECT_EQ(0, viewer_.height());
}

TEST_F(Viewer, OpeningShowsThePictureAndItsNumbers) {
  const QByteArray bytes = EncodedPicture(PlacePicture(300, 200), "bmp");
  const QString path = File("My photo.bmp", bytes);
  ASSERT_EQ(175, bytes.size() / 1024);
  EXPECT_TRUE(pics_.OpenPictureFile(path));
  EXPECT_EQ(PlacePicture(300, 200), Shown());
  EXPECT_EQ(QSize(300, 200), viewer_.Pic->size());
  EXPECT_TRUE(viewer_.Pic->isVisible());
  EXPECT_EQ(QSize(300, 200), viewer_.size());
  EXPECT_EQ(path, Caption());
  EXPECT_EQ("300", tWd_);
  EXPECT_EQ("200", tHt_);
  EXPECT_EQ("175", tSz_);
  EXPECT_TRUE(viewer_.isVisible());
  EXPECT_TRUE(viewer_.windowFlags() & Qt::WindowStaysOnTopHint);
  EXPECT_FALSE(viewer_.isModal());
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(Viewer, TheSizeOfTheLastJpegStaysWhenAPictureIsOpened) {
  Open(60, 40);
  EXPECT_EQ("-", tJSz_);
  ASSERT_TRUE(pics_.NView.CompressPicture(90));
  const QString before = tJSz_;
  ASSERT_NE("-", before);
  Open(30, 20);
  EXPECT_EQ(before, tJSz_);
}

TEST_F(Viewer, OpeningHidesTheScratchSurfaceAndEmptiesIt) {
  viewer_.PicX->SetPicture(PlacePicture(20, 10));
  viewer_.PicX->show();
  Open(60, 40);
  EXPECT_TRUE(viewer_.PicX->isHidden());
  EXPECT_TRUE(viewer_.PicX->Picture().isNull());
}

TEST_F(Viewer, ASizeIsAtLeastOneKilobyte) {
  Open(2, 2);
  EXPECT_EQ("1", tSz_);
}

TEST_F(Viewer, OpeningAsksForTheToolWindowToGo) {
  QSignalSpy hide(&viewer_.Notices, &PictureNotices::HideToolsRequested);
  EXPECT_FALSE(pics_.OpenPictureFile(test_.Path("missing.jpg")));
  EXPECT_EQ(0, hide.size());
  Open(20, 10);
  EXPECT_EQ(1, hide.size());
  EXPECT_TRUE(pics_.LoadPictureFile(test_.Path("open.bmp"), 0));
  EXPECT_EQ(1, hide.size());
}

TEST_F(Viewer, AFileThatIsNoPictureIsTold) {
  Open(60, 40);
  const int before = notices_;
  EXPECT_FALSE(pics_.OpenPictureFile(File("text.jpg", "no picture")));
  ASSERT_EQ(1, test_.platform.dialogs.Boxes.size());
  const ScriptedDialogs::Box box = test_.platform.dialogs.Boxes[0];
  EXPECT_EQ("Error loading image file.", box.text);
  EXPECT_EQ(MessageIcon::Information, box.icon);
  EXPECT_EQ(MessageButtons::Ok, box.buttons);
  EXPECT_EQ("Corvane", box.title);
  EXPECT_EQ(&viewer_, box.owner);
  EXPECT_EQ(before, notices_);
  // The old picture has been cleared before the new one is read.
  EXPECT_TRUE(viewer_.isVisible());
  EXPECT_TRUE(viewer_.Pic->Picture().isNull());
  EXPECT_EQ(QSize(60, 40), viewer_.Pic->size());
}

TEST_F(Viewer, APictureBombIsToldAsAnyBadFile) {
  QByteArray bomb = GifFile(2, 2, {GifColor::Red});
  PutLittle(bomb, 6, 0xFFFF, 2);
  PutLittle(bomb, 8, 0xFFFF, 2);
  EXPECT_FALSE(pics_.OpenPictureFile(File("bomb.gif", bomb)));
  EXPECT_EQ(QStringList{"Error loading image file."}, Messages());
  EXPECT_FALSE(viewer_.isVisible());
}

TEST_F(Viewer, TheToolPanelGetsTheNumbersOfItsPicture) {
  const QString path = File("a.bmp", EncodedPicture(PlacePicture(300, 200), "bmp"));
  const std::optional<PictureSpec> got = pics_.LoadPictureFile(path, 3000);
  ASSERT_TRUE(got);
  EXPECT_EQ(300, got->Width);
  EXPECT_EQ(200, got->Height);
  EXPECT_EQ(175, got->SizeKb);
  EXPECT_EQ(path, Caption());
  EXPECT_EQ(PlacePicture(300, 200), Shown());
  EXPECT_EQ((768 - 200 - 200 - viewer_.Border().height()) / 2, viewer_.y());
  EXPECT_TRUE(viewer_.isVisible());
  EXPECT_FALSE(viewer_.windowFlags() & Qt::WindowStaysOnTopHint);
  EXPECT_EQ(0, notices_);
  pics_.HideViewer();
  EXPECT_FALSE(viewer_.isVisible());
}

TEST_F(Viewer, TheToolPanelsBadFileHidesTheViewer) {
  Open(60, 40);
  EXPECT_FALSE(pics_.LoadPictureFile(File("empty.gif", ""), 0));
  EXPECT_FALSE(viewer_.isVisible());
  EXPECT_EQ(QStringList{"Error loading image file."}, Messages());
}

TEST_F(Viewer, ThePictureStaysWholeInACutWindow) {
  Open(3000, 1200);
  EXPECT_EQ(kCutCaption, Caption());
  EXPECT_EQ(QSize(922, 668), viewer_.size());
  EXPECT_EQ(QSize(3000, 1200), viewer_.Pic->size());
  EXPECT_EQ(PlacePicture(3000, 1200), Shown());
  EXPECT_EQ("3000", tWd_);
  EXPECT_EQ("1200", tHt_);
}

TEST_F(Viewer, EachPictureStandsInTheCorner) {
  viewer_.Pic->move(5, 7);
  Open(60, 40);
  EXPECT_EQ(QPoint(0, 0), viewer_.Pic->pos());
}

TEST_F(Viewer, TheCloseBoxOnlyHides) {
  Open(60, 40);
  QCloseEvent close;
  QApplication::sendEvent(&viewer_, &close);
  EXPECT_FALSE(close.isAccepted());
  EXPECT_FALSE(viewer_.isVisible());
  EXPECT_EQ(PlacePicture(60, 40), Shown());
}

TEST_F(Viewer, AnOpenedFileKeepsItsAttributes) {
  const QString path = File("mine.bmp", EncodedPicture(PlacePicture(20, 10), "bmp"));
  ASSERT_TRUE(test_.platform.attributes.Set(path, AttributeReadOnly));
  EXPECT_TRUE(pics_.OpenPictureFile(path));
  EXPECT_EQ(AttributeReadOnly, test_.platform.attributes.Get(path).value_or(0) & AttributeReadOnly);
}

}  // namespace
