#include <QAccessible>
#include <QCloseEvent>

#include "ControlLook.h"
#include "PictureWindowFixture.h"
#include "Twips.h"

namespace {

// What the window looks like; what its buttons do is tested apart.
class PictureWindow : public PictureWindowTest {};

TEST_F(PictureWindow, EveryButtonHasItsCaptionAndTip) {
  struct Row {
    const QPushButton* button;
    const char* name;
    const char* caption;
    const char* toolTip;
    const QWidget* frame;
  };
  const FPic& w = window_;
  const Row rows[] = {
      {w.bClosePicEdit, "bClosePicEdit", "Close", "Close Picture Editor", w.Frame2},
      {w.bSaveJPG, "bSaveJPG", "Save as JPG", "Save image as JPG file.", w.Frame2},
      {w.bGetPic, "bGetPic", "Open File", "Open picture file for conversion to JPG.", w.FrPicEdit},
      {w.bCloseIm, "bCloseIm", "Close Image Window", "Close Image Window.", w.Frame1},
      {w.bResize, "bResize", "Resize", "Resize image.", w.FrPicOps},
      {w.bUnDo, "bUnDo", "Undo", "Undo last operation.", w.FrPicOps},
      {w.bCompress, "bCompress", "Compress", "Compress image in JPG format.", w.FrPicOps},
      {w.bCrop, "bCrop", "Crop", "Crop picture.", w.FrPicOps},
      {w.bQPicEdit, "bQPicEdit", "?", "Open Help.", w.FrPicEdit},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.name, row.button->objectName());
    EXPECT_EQ(row.caption, row.button->text()) << row.name;
    EXPECT_EQ(row.toolTip, row.button->toolTip()) << row.name;
    EXPECT_EQ(row.frame, row.button->parentWidget()) << row.name;
  }
  EXPECT_EQ(std::size(rows), std::size_t(window_.findChildren<QPushButton*>().size()));
}

TEST_F(PictureWindow, EveryFrameHasItsCaptionAndPlace) {
  struct Row {
    const QGroupBox* frame;
    const char* name;
    const char* caption;
    const QWidget* around;
  };
  const FPic& w = window_;
  const Row rows[] = {{w.FrPicEdit, "FrPicEdit", "Picture Selection:", &w},
                      {w.Frame2, "Frame2", "  Options:  ", w.FrPicEdit},
                      {w.Frame1, "Frame1", "  Image:  ", w.FrPicEdit},
                      {w.FrPicOps, "FrPicOps", "  Operations:  ", w.FrPicEdit}};
  for (const Row& row : rows) {
    EXPECT_EQ(row.name, row.frame->objectName());
    EXPECT_EQ(row.caption, row.frame->title());
    EXPECT_EQ(row.around, row.frame->parentWidget()) << row.name;
  }
  EXPECT_EQ("FPic", w.objectName());
  EXPECT_EQ("Corvane Picture Editor", w.windowTitle());
  EXPECT_EQ(257, ControlLookBits(w.FrPicEdit));
}

TEST_F(PictureWindow, EveryLabelStandsAndBelongsToItsBox) {
  const FPic& w = window_;
  const std::pair<const char*, const QWidget*> rows[] = {{" Image Width:", w.tWd},
                                                         {" Image Height:", w.tHt},
                                                         {"Orig. File Size(KB):", w.tSz},
                                                         {"JPG File Size(KB):", w.tJSz},
                                                         {"Resize:", w.tPercSize},
                                                         {"JPG Compress:", w.tPercComp},
                                                         {"% Original Size", nullptr},
                                                         {"Quality: 5 - 100", nullptr},
                                                         {"Crop:", nullptr},
                                                         {"   Picture Editor Toolbar", nullptr}};
  for (const auto& [text, box] : rows) {
    const QLabel* found = nullptr;
    for (const QLabel* label : w.findChildren<QLabel*>())
      if (label->text() == text) found = label;
    ASSERT_TRUE(found) << text;
    EXPECT_EQ(box, found->buddy()) << text;
  }
  EXPECT_EQ("Label10", w.Label10->objectName());
  EXPECT_EQ("   Picture Editor Toolbar", w.Label10->text());
  EXPECT_EQ("LabCropSize", w.LabCropSize->objectName());
  EXPECT_EQ("", w.LabCropSize->text());
}

TEST_F(PictureWindow, TheBoxesStartEmptyOrAtAHundred) {
  const FPic& w = window_;
  const std::pair<const QLineEdit*, const char*> readOuts[] = {
      {w.tWd, "tWd"}, {w.tHt, "tHt"}, {w.tSz, "tSz"}, {w.tJSz, "tJSz"}};
  for (const auto& [box, name] : readOuts) {
    EXPECT_EQ(name, box->objectName());
    EXPECT_TRUE(box->isReadOnly()) << name;
    EXPECT_EQ("", box->text()) << name;
    EXPECT_EQ(w.Frame1, box->parentWidget()) << name;
  }
  const std::pair<const QLineEdit*, const char*> boxes[] = {{w.tPercSize, "tPercSize"}, {w.tPercComp, "tPercComp"}};
  for (const auto& [box, name] : boxes) {
    EXPECT_EQ(name, box->objectName());
    EXPECT_FALSE(box->isReadOnly()) << name;
    EXPECT_EQ("100", box->text()) << name;
    EXPECT_EQ(w.FrPicOps, box->parentWidget()) << name;
  }
  EXPECT_FALSE(w.Busy);
}

TEST_F(PictureWindow, TheFrameStaysAtTheBottomInTheMiddle) {
  window_.setWindowState(Qt::WindowNoState);
  const QSize frame = window_.FrPicEdit->size();
  const int width = frame.width();
  // Half of an odd difference in twips is cut off, which is less than half a pixel.
  for (const auto& [more, left] : {std::pair(0, 0), {1, 0}, {2, 1}, {3, 1}, {100, 50}, {101, 50}}) {
    for (const int height : {frame.height(), frame.height() + 1, frame.height() + 333}) {
      window_.resize(width + more, height);
      EXPECT_EQ(QPoint(left, height - frame.height()), window_.FrPicEdit->pos()) << more;
      EXPECT_EQ(frame, window_.FrPicEdit->size());
    }
  }
  // And no smaller than the frame.
  window_.resize(1, 1);
  EXPECT_EQ(frame, window_.size());
}

TEST_F(PictureWindow, TheViewerLeavesTheFrameFree) {
  const int frame = window_.FrPicEdit->height();
  ASSERT_GT(frame, 100);
  ASSERT_TRUE(pics_.FrPicEditHeight);
  EXPECT_EQ(PixelsToTwips(frame), pics_.FrPicEditHeight());
  ChoosePicture(100, 1200);
  EXPECT_EQ(768 - frame, viewer_.height() + viewer_.Border().height());
  Resize("25");
  const int whole = 300 + viewer_.Border().height();
  EXPECT_NEAR((768 - frame - whole) / 2.0, viewer_.y(), 0.5);
}

TEST_F(PictureWindow, ThePicturesNumbersShow) {
  ChoosePicture(300, 200);
  EXPECT_EQ("300", window_.tWd->text());
  EXPECT_EQ("200", window_.tHt->text());
  EXPECT_EQ("175", window_.tSz->text());
  EXPECT_EQ("", window_.tJSz->text());
  Drag({10, 20}, {50, 35});
  EXPECT_EQ("40 X 15", window_.LabCropSize->text());
  // The frame is as large as before.
  const QSize frame = window_.FrPicEdit->size();
  for (const char* text : {"", "99999 X 99999"}) {
    window_.LabCropSize->setText(text);
    window_.tWd->setText("64000");
    QApplication::processEvents();
    EXPECT_EQ(frame, window_.FrPicEdit->size());
  }
}

TEST_F(PictureWindow, TabGoesFromLeftToRight) {
  const FPic& w = window_;
  QList<const QWidget*> order;
  const QWidget* next = w.bGetPic;
  do {
    if (next->focusPolicy() & Qt::TabFocus) order.append(next);
    next = next->nextInFocusChain();
  } while (next != w.bGetPic);
  const QList<const QWidget*> wanted = {w.bGetPic,   w.bSaveJPG,  w.bClosePicEdit, w.tWd,       w.tHt,
                                        w.tSz,       w.tJSz,      w.bCloseIm,      w.tPercSize, w.bResize,
                                        w.tPercComp, w.bCompress, w.bCrop,         w.bUnDo,     w.bQPicEdit};
  EXPECT_EQ(wanted, order);
  EXPECT_EQ(w.bGetPic, w.focusWidget());
}

TEST_F(PictureWindow, EveryControlTellsItsNameToScreenReaders) {
  for (QWidget* control : window_.findChildren<QWidget*>()) {
    if (!(control->focusPolicy() & Qt::TabFocus)) continue;
    EXPECT_NE("", control->accessibleName()) << qPrintable(control->objectName());
  }
  EXPECT_EQ("Image Width", window_.tWd->accessibleName());
  EXPECT_EQ("JPG Compress", window_.tPercComp->accessibleName());
  EXPECT_EQ("Help", window_.bQPicEdit->accessibleName());
  ChoosePicture(100, 80);
  Drag({10, 20}, {50, 35});
  EXPECT_EQ("Crop size 40 X 15", window_.LabCropSize->accessibleName());
}

TEST_F(PictureWindow, TheKeysPressTheButtonThatHasTheFocus) {
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
    window_.bCompress->setFocus();
    QTest::keyClick(window_.bCompress, key);
    EXPECT_EQ(QStringList{StringText(102)}, TakeMessages());
  }
}

TEST_F(PictureWindow, NothingIsCutOffWithAnyUsualFont) {
  const QFont before = QApplication::font();
  for (int points = 8; points <= 14; ++points) {
    QFont font = before;
    font.setPointSize(points);
    QApplication::setFont(font);
    SCOPED_TRACE(testing::Message() << points << " points");
    FPic window(test_.program);
    window.SetPictures(pics_, viewer_);
    window.LabCropSize->setText("12800 X 12800");
    window.Open();
    QApplication::processEvents();
    EXPECT_LE(window.width(), window.screen()->availableGeometry().width());
    int seen = 0;
    for (const QWidget* control : window.FrPicEdit->findChildren<QWidget*>()) {
      const bool hasText = qobject_cast<const QLabel*>(control) || qobject_cast<const QPushButton*>(control) ||
                           qobject_cast<const QLineEdit*>(control) || qobject_cast<const QGroupBox*>(control);
      if (!hasText) continue;
      ++seen;
      EXPECT_GE(control->width(), control->minimumSizeHint().width()) << qPrintable(control->objectName());
      EXPECT_GE(control->height(), control->minimumSizeHint().height()) << qPrintable(control->objectName());
      EXPECT_TRUE(control->parentWidget()->rect().contains(control->geometry())) << qPrintable(control->objectName());
    }
    EXPECT_EQ(9 + 6 + 3 + 11, seen);
    const QLabel& size = *window.LabCropSize;
    EXPECT_GE(size.width(), size.fontMetrics().horizontalAdvance(size.text()));
    for (const QLineEdit* box : {window.tWd, window.tJSz, window.tPercSize, window.tPercComp})
      EXPECT_GE(box->width() - 8, box->fontMetrics().horizontalAdvance("12800"));
  }
  QApplication::setFont(before);
}

TEST_F(PictureWindow, TheFramesCaptionHasAStripOfItsOwn) {
  const QRect strip(0, 0, window_.FrPicEdit->width(), window_.FrPicEdit->contentsRect().top());
  EXPECT_GE(strip.height(), window_.FrPicEdit->fontMetrics().height());
  EXPECT_LE(strip.height(), window_.Label10->y());
}

}  // namespace
