#include <QCloseEvent>
#include <QDir>

#include "PictureWindowFixture.h"

namespace {

// What the window's other buttons do.
class PictureCommands : public PictureWindowTest {};

// --- cropping

TEST_F(PictureCommands, CropNeedsAnArea) {
  ChoosePicture(100, 80);
  window_.bCrop->click();
  EXPECT_EQ(&viewer_, Dialogs().Boxes.value(0).owner);
  ExpectBox("A cropping area must first be defined by dragging the mouse.");
  Drag({10, 20}, {10, 60});
  window_.bCrop->click();
  ExpectBox("A cropping area must first be defined by dragging the mouse.");
  EXPECT_EQ(QSize(100, 80), Shown().size());
}

TEST_F(PictureCommands, ADragThatIsStillUnderWayIsNoArea) {
  ChoosePicture(100, 80);
  viewer_.Pic_MouseDown({10, 20});
  viewer_.Pic_MouseMove({50, 60});
  window_.bCrop->click();
  ExpectBox("A cropping area must first be defined by dragging the mouse.");
  EXPECT_EQ(QSize(100, 80), Shown().size());
}

TEST_F(PictureCommands, CropDeletesTheLastJpegAndResizeLeavesIt) {
  ChoosePicture(100, 80);
  Compress("80");
  Resize("50");
  EXPECT_TRUE(Has("cvtemp.jpg"));
  Drag({5, 5}, {30, 30});
  window_.bCrop->click();
  EXPECT_TRUE(Has("cvtemp.bmp"));
  EXPECT_FALSE(Has("cvtemp.jpg"));
}

TEST_F(PictureCommands, CropCutsAndForgetsTheArea) {
  ChoosePicture(100, 80);
  state_.JpegCurrent = true;
  Drag({50, 35}, {10, 20});
  window_.bCrop->click();
  EXPECT_EQ(PlacePicture(100, 80).copy(10, 20, 40, 15), Shown());
  EXPECT_EQ((QStringList{"40", "15", window_.tSz->text(), ""}), ReadOuts());
  EXPECT_EQ("", window_.LabCropSize->text());
  EXPECT_FALSE(state_.CropDefined);
  EXPECT_FALSE(state_.JpegCurrent);
  EXPECT_TRUE(Messages().isEmpty());
  window_.bCrop->click();
  ExpectBox("A cropping area must first be defined by dragging the mouse.");
}

TEST_F(PictureCommands, TheLabelShowsTheSizeAsDraggedAndNotAsCut) {
  ChoosePicture(100, 80);
  Drag({40, 50}, {300, 200});
  EXPECT_EQ("260 X 150", window_.LabCropSize->text());
  window_.bCrop->click();
  EXPECT_EQ("59", window_.tWd->text());
  EXPECT_EQ("29", window_.tHt->text());
}

// Meant in ModPics::ResizePicture: the crop area outlives a resize, and the next crop uses it.
TEST_F(PictureCommands, ResizeAndUndoKeepTheCropAreaAndTheNextCropUsesIt) {
  ChoosePicture(100, 80);
  Drag({10, 20}, {50, 35});
  Resize("50");
  EXPECT_TRUE(state_.CropDefined);
  EXPECT_EQ("40 X 15", window_.LabCropSize->text());
  const QImage half = Shown();
  window_.bUnDo->click();
  EXPECT_TRUE(state_.CropDefined);
  Resize("50");
  window_.bCrop->click();
  EXPECT_EQ(half.copy(10, 20, 40, 15), Shown());
  EXPECT_FALSE(state_.CropDefined);
}

// --- resizing

// Meant in FPic::OnResize: ten per cent passes, though the message asks for more than ten.
TEST_F(PictureCommands, TenPassesThoughTheMessageSaysGreaterThanTen) {
  ChoosePicture(100, 80);
  Resize("10");
  EXPECT_TRUE(Messages().isEmpty());
  EXPECT_EQ(QSize(10, 8), Shown().size());
  EXPECT_EQ("10", window_.tWd->text());
}

TEST_F(PictureCommands, OtherPercentagesAreTold) {
  ChoosePicture(100, 80);
  for (const char* text :
       {"9", "100", "abc", "", " ", "-50", "0", "1e2", "9.4", "99.5", "100.5", "50%", "5 0", "0x20"}) {
    Resize(text);
    SCOPED_TRACE(text);
    ExpectBox("Must be a number greater than 10 and not 100.");
    EXPECT_EQ(QSize(100, 80), Shown().size());
    EXPECT_FALSE(window_.Busy);
  }
  EXPECT_FALSE(Has("cvtemp.bmp"));
}

TEST_F(PictureCommands, AboveAHundredEnlarges) {
  for (const auto& [text, size] :
       {std::pair("150", QSize(150, 120)), {"101", QSize(101, 81)}, {"1000", QSize(1000, 800)}}) {
    ChoosePicture(100, 80);
    Resize(text);
    EXPECT_EQ(size, Shown().size()) << text;
  }
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(PictureCommands, EnlargingHasNoUpperLimitOfItsOwn) {
  for (const auto& [text, size] :
       {std::pair("1001", QSize(100, 80)), {"2000", QSize(200, 160)}, {"32767", QSize(3277, 2621)}}) {
    ChoosePicture(10, 8);
    Resize(text);
    EXPECT_EQ(size, Shown().size()) << text;
    EXPECT_EQ(QString::number(size.width()), window_.tWd->text());
  }
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(PictureCommands, NumbersAreReadInEveryForm) {
  for (const auto& [text, width] : {std::pair(" 50 ", 50),
                                    {"+50", 50},
                                    {"5e1", 50},
                                    {"5d1", 50},
                                    {"49.5", 50},
                                    {"50.5", 50},
                                    {"9.5", 10},
                                    {".5E2", 50}}) {
    ChoosePicture(100, 80);
    Resize(text);
    EXPECT_EQ(width, Shown().width()) << text;
  }
}

// Meant in FPic::OnResize: a number beyond 16 bits ends the command without a word.
TEST_F(PictureCommands, NumbersBeyond16BitsEndInSilence) {
  ChoosePicture(100, 80);
  for (const char* text : {"40000", "32767.5", "-40000", "1e9", "1e999", "99999999999999999999"}) {
    Resize(text);
    Compress(text);
    EXPECT_TRUE(Messages().isEmpty()) << text;
    EXPECT_EQ(PlacePicture(100, 80), Shown()) << text;
    EXPECT_FALSE(Has("cvtemp.bmp")) << text;
    EXPECT_FALSE(window_.Busy);
    EXPECT_FALSE(state_.JpegCurrent);
  }
}

TEST_F(PictureCommands, AResizedPictureIsNoLongerTheLastJpeg) {
  ChoosePicture(100, 80);
  Compress("30");
  Resize("50");
  EXPECT_FALSE(state_.JpegCurrent);
  ASSERT_TRUE(Has("cvtemp.jpg"));
  const QImage shown = Shown();
  Save(test_.Path("out.jpg"));
  EXPECT_EQ(JpegOf(shown, 100), FileBytes(test_.Path("out.jpg")));
}

// There is no word of its own for it.
TEST_F(PictureCommands, APercentageForWhichThereIsNoMemoryIsToldAndChangesNothing) {
  ChoosePicture(1000, 800);
  Compress("50");
  const QImage shown = Shown();
  const QStringList before = ReadOuts();
  const QByteArray snapshot = FileBytes(Scratch("cvtemp.bmp"));
  Resize("32767");
  ExpectBox("Must be a number greater than 10 and not 100.");
  EXPECT_EQ(shown, Shown());
  EXPECT_EQ(before, ReadOuts());
  EXPECT_EQ(snapshot, FileBytes(Scratch("cvtemp.bmp")));
  EXPECT_TRUE(state_.JpegCurrent);
  EXPECT_FALSE(window_.Busy);
}

// --- compressing

TEST_F(PictureCommands, QualitiesFrom5To100Compress) {
  for (const auto& [text, quality] : {std::pair("5", qint16(5)), {"100", 100}, {" 75 ", 75}, {"4.6", 5}, {"5.4", 5}}) {
    ChoosePicture(100, 80);
    state_.JpegCurrent = false;
    Compress(text);
    EXPECT_TRUE(Messages().isEmpty()) << text;
    EXPECT_TRUE(state_.JpegCurrent) << text;
    EXPECT_EQ(JpegOf(PlacePicture(100, 80), quality), FileBytes(Scratch("cvtemp.jpg"))) << text;
    EXPECT_EQ(QString::number(FileSizeKb(Scratch("cvtemp.jpg"))), window_.tJSz->text());
  }
}

TEST_F(PictureCommands, OtherQualitiesAreTold) {
  ChoosePicture(100, 80);
  for (const char* text : {"4", "101", "abc", "", "-5", "4.5", "100.6", "70-95"}) {
    Compress(text);
    SCOPED_TRACE(text);
    ExpectBox("Must be a number between 5 and 100. Recommended range is 70 to 95.");
    EXPECT_FALSE(state_.JpegCurrent);
    EXPECT_FALSE(Has("cvtemp.jpg"));
    EXPECT_FALSE(window_.Busy);
  }
}

// Meant in FPic::OnCompress: the picture counts as the last JPEG even when compressing failed.
TEST_F(PictureCommands, TheFlagIsSetWhateverTheCompressDid) {
  ChoosePicture(100, 80);
  // A folder in a file's place stops whoever wants to write it.
  ASSERT_TRUE(QDir().mkpath(Scratch("cvtemp.jpg") + "/x"));
  Compress("80");
  EXPECT_TRUE(Messages().isEmpty());
  EXPECT_EQ("", window_.tJSz->text());
  EXPECT_TRUE(state_.JpegCurrent);
}

TEST_F(PictureCommands, CompressingTwiceCompressesTheCompressedPicture) {
  ChoosePicture(200, 150);
  Compress("10");
  const QImage once = Shown();
  Compress("90");
  EXPECT_EQ(JpegOf(once, 90), FileBytes(Scratch("cvtemp.jpg")));
  window_.bUnDo->click();
  EXPECT_EQ(once, Shown());
}

// --- undo

// Meant in FPic::OnUnDo: an Undo that does nothing still makes the picture no longer count as the last JPEG.
TEST_F(PictureCommands, UndoClearsTheFlagEvenWhereItDoesNothing) {
  state_.JpegCurrent = true;
  window_.bUnDo->click();
  EXPECT_FALSE(state_.JpegCurrent);
  ChoosePicture(100, 80);
  Compress("80");
  window_.bUnDo->click();
  EXPECT_FALSE(state_.JpegCurrent);
  EXPECT_EQ(PlacePicture(100, 80), Shown());
  window_.bUnDo->click();
  ExpectBox("Only one level of undo.");
}

// Meant in ModPics::UndoPicture: Undo after another picture was opened brings the first one back.
TEST_F(PictureCommands, UndoAfterOpeningAnotherPictureBringsTheFirstBack) {
  ChooseOneColor("a.bmp", Qt::red);
  Resize("50");
  ChooseOneColor("b.bmp", Qt::green, QSize(20, 20));
  window_.bUnDo->click();
  EXPECT_EQ(QColor(Qt::red), PixelShown(0, 0));
  EXPECT_EQ("60", window_.tWd->text());
}

TEST_F(PictureCommands, CompressUndoSaveWritesTheRestoredPicture) {
  ChoosePicture(100, 80);
  Compress("30");
  window_.bUnDo->click();
  Save(test_.Path("out.jpg"));
  EXPECT_EQ(JpegOf(PlacePicture(100, 80), 100), FileBytes(test_.Path("out.jpg")));
}

// --- opening and closing the editor

TEST_F(PictureCommands, OpeningTheEditorDeletesTheScratchFilesAndClosingLeavesThem) {
  for (const char* name : {"qktemp.bmp", "qktemp.jpg", "cvtemp.bmp", "cvtemp.jpg"})
    ASSERT_TRUE(PutFile(Scratch(name), "x"));
  window_.bClosePicEdit->click();
  EXPECT_FALSE(window_.isVisible());
  EXPECT_FALSE(Has("qktemp.bmp"));
  EXPECT_FALSE(Has("qktemp.jpg"));
  EXPECT_TRUE(Has("cvtemp.bmp"));
  EXPECT_TRUE(Has("cvtemp.jpg"));
  ASSERT_TRUE(PutFile(Scratch("qktemp.jpg"), "x"));
  state_.JpegCurrent = true;
  window_.Open();
  EXPECT_TRUE(window_.isVisible());
  EXPECT_FALSE(window_.isModal());
  EXPECT_FALSE(Has("cvtemp.bmp"));
  EXPECT_FALSE(Has("cvtemp.jpg"));
  EXPECT_TRUE(Has("qktemp.jpg"));
  EXPECT_FALSE(state_.JpegCurrent);
}

TEST_F(PictureCommands, ClosingHidesTheViewerToo) {
  for (const bool byItsBox : {false, true}) {
    window_.Open();
    ChoosePicture(100, 80);
    const QStringList before = ReadOuts();
    ASSERT_TRUE(PutFile(Scratch("qktemp.bmp"), "x"));
    EXPECT_EQ(window_.windowHandle(), viewer_.windowHandle()->transientParent());
    if (byItsBox) {
      QCloseEvent close;
      QApplication::sendEvent(&window_, &close);
      EXPECT_FALSE(close.isAccepted());
    } else {
      window_.bClosePicEdit->click();
    }
    EXPECT_FALSE(window_.isVisible());
    EXPECT_FALSE(viewer_.isVisible());
    EXPECT_FALSE(IsOnTop());
    // Tied to a window that is gone the tool panel's picture wouldn't show.
    EXPECT_EQ(nullptr, viewer_.Owner());
    EXPECT_FALSE(Has("qktemp.bmp"));
    EXPECT_EQ(before, ReadOuts());
  }
}

TEST_F(PictureCommands, ClosingTheImageBlanksTheReadOutsAndLeavesTheEditor) {
  ChoosePicture(100, 80);
  Compress("80");
  ASSERT_TRUE(PutFile(Scratch("qktemp.bmp"), "x"));
  ASSERT_FALSE(ReadOuts().contains(""));
  window_.bCloseIm->click();
  EXPECT_EQ((QStringList{"", "", "", ""}), ReadOuts());
  EXPECT_TRUE(window_.isVisible());
  EXPECT_FALSE(viewer_.isVisible());
  EXPECT_FALSE(IsOnTop());
  EXPECT_TRUE(Has("qktemp.bmp"));
  Compress("80");
  ExpectBox("There must be a picture open and visible in the Picture Editor window.");
}

TEST_F(PictureCommands, TheQuestionMarkOpensTheHelp) {
  window_.bQPicEdit->click();
  ExpectBox(StringText(145));
  ASSERT_TRUE(PutFile(Scratch("cvn2.hlp"), "help"));
  window_.bQPicEdit->click();
  EXPECT_EQ(1, test_.platform.shell.Opened.size());
}

// --- the cursor

// Tells which cursor there is when messages run in the middle of a command.
TEST_F(PictureCommands, WhileItWorksTheCursorSaysSo) {
  const QString picture = File("a.bmp", EncodedPicture(PlacePicture(200, 150), "bmp"));
  Choose(picture);
  Drag({10, 20}, {150, 135});
  const auto seenIn = [this](QPushButton* button) {
    bool isWaiting = false, isRun = false;
    Dialogs().WhileShown = [&] { EXPECT_EQ(nullptr, QGuiApplication::overrideCursor()); };
    QMetaObject::invokeMethod(
        &window_,
        [&] {
          isRun = true;
          isWaiting = QGuiApplication::overrideCursor() && QGuiApplication::overrideCursor()->shape() == Qt::WaitCursor;
        },
        Qt::QueuedConnection);
    Dialogs().Texts = {test_.Path("out.jpg")};
    button->click();
    Dialogs().WhileShown = nullptr;
    EXPECT_TRUE(isRun);
    EXPECT_EQ(nullptr, QGuiApplication::overrideCursor());
    return isWaiting;
  };
  EXPECT_TRUE(seenIn(window_.bCrop));
  window_.tPercSize->setText("50");
  EXPECT_TRUE(seenIn(window_.bResize));
  EXPECT_TRUE(seenIn(window_.bCompress));
  state_.JpegCurrent = false;
  EXPECT_TRUE(seenIn(window_.bSaveJPG));
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(PictureCommands, ABoxIsShownWithTheUsualCursor) {
  int shown = 0;
  Dialogs().WhileShown = [&] {
    ++shown;
    EXPECT_EQ(nullptr, QGuiApplication::overrideCursor());
  };
  Choose(File("text.bmp", "no picture"));
  ChoosePicture(100, 80);
  window_.bUnDo->click();
  Resize("9");
  Save(test_.Path("no/such/folder/out.jpg"));
  EXPECT_EQ(3 + 4, shown);  // dialogs and boxes
}

// --- Busy

TEST_F(PictureCommands, WhileACommandRunsNoSecondOneDoes) {
  ChoosePicture(100, 80);
  Drag({10, 20}, {50, 35});
  int nested = 0;
  Dialogs().WhileShown = [&] {
    ++nested;
    const int boxes = Dialogs().Boxes.size(), questions = Dialogs().Questions.size();
    for (QPushButton* button :
         {window_.bGetPic, window_.bSaveJPG, window_.bCrop, window_.bResize, window_.bCompress, window_.bUnDo})
      button->click();
    EXPECT_EQ(boxes, Dialogs().Boxes.size());
    EXPECT_EQ(questions, Dialogs().Questions.size());
    EXPECT_TRUE(window_.Busy);
  };
  Resize("abc");
  Choose("");
  Save("");
  EXPECT_EQ(3, nested);
  EXPECT_FALSE(window_.Busy);
  EXPECT_EQ(QSize(100, 80), Shown().size());
}

}  // namespace
