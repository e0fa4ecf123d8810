#include <QCloseEvent>
#include <QDir>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QTest>

#include "PictureWindowFixture.h"

namespace {

// Opening a picture in the window and saving it.
class PictureOpenSave : public PictureWindowTest {};

// --- without a picture

TEST_F(PictureOpenSave, WithoutAPictureAllButUndoSaySo) {
  for (QPushButton* button : {window_.bSaveJPG, window_.bCrop, window_.bResize, window_.bCompress}) {
    button->click();
    ASSERT_FALSE(Dialogs().Boxes.isEmpty()) << qPrintable(button->objectName());
    EXPECT_EQ(&window_, Dialogs().Boxes[0].owner);
    ExpectBox("There must be a picture open and visible in the Picture Editor window.");
    EXPECT_FALSE(window_.Busy);
  }
  window_.bUnDo->click();
  EXPECT_TRUE(Messages().isEmpty());
  EXPECT_TRUE(Dialogs().Questions.isEmpty());
}

TEST_F(PictureOpenSave, AViewerClosedByItsOwnBoxCountsAsNoPictureAndTheReadOutsStay) {
  ChoosePicture(100, 80);
  Compress("80");
  const QStringList before = ReadOuts();
  QCloseEvent close;
  QApplication::sendEvent(&viewer_, &close);
  EXPECT_FALSE(viewer_.isVisible());
  EXPECT_EQ(before, ReadOuts());
  Resize("50");
  EXPECT_EQ(QStringList{StringText(102)}, TakeMessages());
  EXPECT_EQ(QSize(100, 80), Shown().size());
  window_.bUnDo->click();
  EXPECT_TRUE(Messages().isEmpty());
  EXPECT_TRUE(Has("cvtemp.bmp"));
}

TEST_F(PictureOpenSave, AViewerClosedByItsOwnBoxKeepsItsPlaceInTheTopLayerAndClosingTheImageGivesItUp) {
  ChoosePicture(100, 80);
  QCloseEvent close;
  QApplication::sendEvent(&viewer_, &close);
  ASSERT_FALSE(viewer_.isVisible());
  EXPECT_TRUE(IsOnTop());
  // Once hidden it isn't taken out of that layer any more.
  window_.bCloseIm->click();
  EXPECT_TRUE(IsOnTop());
  ChoosePicture(100, 80);
  window_.bCloseIm->click();
  EXPECT_FALSE(IsOnTop());
}

// --- opening

TEST_F(PictureOpenSave, OpenAsksForAPictureFile) {
  Choose("");
  ASSERT_EQ(1, Dialogs().Questions.size());
  const ScriptedDialogs::Question question = Dialogs().Questions[0];
  EXPECT_EQ(ScriptedDialogs::Question::Kind::OpenFile, question.kind);
  EXPECT_EQ("Select Picture", question.title);
  EXPECT_EQ("", question.given);
  EXPECT_EQ((QList<FileFilter>{{"Picture Files(*.bmp;*.jpg;*.gif;*.ico)", "*.bmp;*.jpg;*.gif;*.ico"}}),
            question.filters);
  EXPECT_EQ(&window_, question.owner);
  EXPECT_FALSE(viewer_.isVisible());
  EXPECT_FALSE(window_.Busy);
}

TEST_F(PictureOpenSave, OpenShowsThePicture) {
  ChoosePicture(100, 80);
  EXPECT_EQ(PlacePicture(100, 80), Shown());
  EXPECT_TRUE(viewer_.isVisible());
  EXPECT_TRUE(IsOnTop());
  EXPECT_TRUE(Messages().isEmpty());
}

// Meant in FPic::OnGetPic: a file that isn't there is passed over without a word.
TEST_F(PictureOpenSave, AFileThatIsNotThereIsPassedOverInSilence) {
  ChoosePicture(100, 80);
  Drag({10, 20}, {50, 35});
  Choose(test_.Path("missing.jpg"));
  EXPECT_TRUE(Messages().isEmpty());
  EXPECT_EQ(QSize(100, 80), Shown().size());
  EXPECT_FALSE(state_.CropDefined);
  EXPECT_FALSE(IsOnTop());
}

TEST_F(PictureOpenSave, OpeningForgetsTheCropAreaAndCancelKeepsIt) {
  ChoosePicture(100, 80);
  Drag({10, 20}, {50, 35});
  Choose("");
  EXPECT_TRUE(state_.CropDefined);
  viewer_.Pic_MouseDown({1, 1});
  ChoosePicture(100, 80);
  EXPECT_FALSE(state_.CropDefined);
  EXPECT_FALSE(state_.CropDragging);
  window_.bCrop->click();
  ExpectBox("A cropping area must first be defined by dragging the mouse.");
}

TEST_F(PictureOpenSave, TheSizeOfAForgottenCropAreaStaysOnShow) {
  ChoosePicture(100, 80);
  Drag({10, 20}, {50, 35});
  ChoosePicture(60, 40, "b.bmp");
  EXPECT_FALSE(state_.CropDefined);
  EXPECT_EQ("40 X 15", window_.LabCropSize->text());
}

TEST_F(PictureOpenSave, BehindTheChoiceOfAFileTheEditorHasTheKeys) {
  QWidget other;
  other.show();
  Dialogs().WhileShown = [&] {
    other.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
  };
  ChoosePicture(100, 80);
  EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
  Choose(test_.Path("none.bmp"));
  EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
}

TEST_F(PictureOpenSave, DamagedAndMislabelledFilesAreToldAndHugeOnesToo) {
  const QByteArray whole = EncodedPicture(PlacePicture(100, 80), "jpg");
  QByteArray huge = EncodedPicture(PlacePicture(20, 15), "bmp");
  PutLittle(huge, 18, 60000, 4);
  PutLittle(huge, 22, 60000, 4);
  const std::pair<const char*, QByteArray> files[] = {
      {"empty.jpg", ""},
      {"text.gif", "no picture"},
      {"cut.jpg", whole.left(whole.size() / 8)},
      {"cut.bmp", EncodedPicture(PlacePicture(20, 15), "bmp").chopped(1)},
      {"huge.bmp", huge},
      {"wrong.ico", QByteArray("\0\0\1\0\1\0", 6)},
      {"page.bmp", "<HTML></HTML>"}};
  for (const auto& [name, bytes] : files) {
    Choose(File(name, bytes));
    SCOPED_TRACE(name);
    ExpectBox("Error loading image file.");
    EXPECT_FALSE(window_.Busy);
  }
  // A good picture under another kind's name is opened.
  Choose(File("jpeg.bmp", whole));
  EXPECT_TRUE(Messages().isEmpty());
  EXPECT_EQ(QSize(100, 80), Shown().size());
}

TEST_F(PictureOpenSave, TheEditorOpensNoPng) {
  const QByteArray png = EncodedPicture(PlacePicture(20, 15), "png");
  for (const char* name : {"a.png", "b.jpg"}) {
    Choose(File(name, png));
    ExpectBox("Error loading image file.");
    EXPECT_FALSE(viewer_.isVisible());
  }
}

TEST_F(PictureOpenSave, UseThisPictureIsNeverSeen) {
  struct Watch : QObject {
    QStringList captions;
    bool eventFilter(QObject* watched, QEvent* event) override {
      if (event->type() == QEvent::Show) captions.append(static_cast<QWidget*>(watched)->windowTitle());
      return false;
    }
  } watch;
  EXPECT_EQ("Use This Picture?", Caption());
  viewer_.installEventFilter(&watch);
  const QString path = File("a.bmp", EncodedPicture(PlacePicture(20, 15), "bmp"));
  Choose(path);
  viewer_.hide();
  EXPECT_TRUE(pics_.LoadPictureFile(path, 0));
  viewer_.hide();
  ChoosePicture(3000, 100);
  EXPECT_EQ((QStringList{path, path, kCutCaption}), watch.captions);
}

TEST_F(PictureOpenSave, WhileAFileIsChosenTheViewerIsNoLongerOnTop) {
  ChoosePicture(100, 80);
  bool asked = false;
  Dialogs().WhileShown = [&] {
    asked = true;
    EXPECT_TRUE(viewer_.isVisible());
    EXPECT_FALSE(IsOnTop());
    EXPECT_TRUE(window_.Busy);
  };
  Choose("");
  EXPECT_TRUE(asked);
}

// Meant in FPic::OnGetPic: after Cancel the viewer stays out of the top layer.
TEST_F(PictureOpenSave, AfterACancelledOpenTheViewerStaysOutOfTheTopLayerUntilTheNextFileIsOpenedOrSaved) {
  ChoosePicture(100, 80);
  Choose("");
  EXPECT_TRUE(viewer_.isVisible());
  EXPECT_FALSE(IsOnTop());
  Resize("50");
  window_.bUnDo->click();
  Compress("80");
  EXPECT_FALSE(IsOnTop());
  Save("");
  EXPECT_TRUE(IsOnTop());
  Choose("");
  EXPECT_FALSE(IsOnTop());
  ChoosePicture(100, 80);
  EXPECT_TRUE(IsOnTop());
}

TEST_F(PictureOpenSave, OpeningAnotherPictureLeavesTheSizeOfTheLastJpeg) {
  ChoosePicture(100, 80);
  Compress("80");
  const QString size = window_.tJSz->text();
  ASSERT_NE("", size);
  ChoosePicture(60, 40, "b.bmp");
  EXPECT_EQ(size, window_.tJSz->text());
}

// --- saving

TEST_F(PictureOpenSave, SaveAsksForAJpegFileWithTheViewerHidden) {
  ChoosePicture(100, 80);
  bool asked = false;
  Dialogs().WhileShown = [&] {
    asked = true;
    EXPECT_FALSE(viewer_.isVisible());
    EXPECT_FALSE(IsOnTop());
    EXPECT_TRUE(window_.Busy);
  };
  Dialogs().Questions.clear();
  Save("");
  EXPECT_TRUE(asked);
  ASSERT_EQ(1, Dialogs().Questions.size());
  const ScriptedDialogs::Question question = Dialogs().Questions[0];
  EXPECT_EQ(ScriptedDialogs::Question::Kind::SaveFile, question.kind);
  EXPECT_EQ("Save AS JPG File", question.title);
  EXPECT_EQ("jpg", question.given);
  EXPECT_EQ((QList<FileFilter>{{"JPG Files(*.jpg)", "*.jpg"}}), question.filters);
  EXPECT_EQ(&window_, question.owner);
  EXPECT_TRUE(viewer_.isVisible());
  EXPECT_TRUE(IsOnTop());
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(PictureOpenSave, ACancelledSaveKeepsEverything) {
  ChoosePicture(100, 80);
  Compress("80");
  Save("");
  EXPECT_TRUE(state_.JpegCurrent);
  EXPECT_TRUE(Has("cvtemp.bmp"));
  window_.bUnDo->click();
  EXPECT_EQ(PlacePicture(100, 80), Shown());
}

TEST_F(PictureOpenSave, SavePutsTheViewerBackWhereItWas) {
  ChoosePicture(100, 80);
  const QPoint before = viewer_.pos();
  Save(test_.Path("out.jpg"));
  EXPECT_TRUE(viewer_.isVisible());
  EXPECT_TRUE(IsOnTop());
  EXPECT_EQ(before, viewer_.pos());
  EXPECT_TRUE(Messages().isEmpty());
  EXPECT_EQ(JpegOf(PlacePicture(100, 80), 100), FileBytes(test_.Path("out.jpg")));
  EXPECT_EQ(QString::number(FileSizeKb(test_.Path("out.jpg"))), window_.tJSz->text());
}

TEST_F(PictureOpenSave, AnExistingFileIsReplacedOnlyOnOk) {
  ChoosePicture(100, 80);
  const QString path = File("out.jpg", "old");
  Save(path, {MessageAnswer::Cancel});
  ExpectBox("File exists. Replace it?", MessageButtons::OkCancel);
  EXPECT_EQ("old", FileBytes(path));
  EXPECT_TRUE(viewer_.isVisible());
  EXPECT_TRUE(IsOnTop());
  EXPECT_EQ("", window_.tJSz->text());
  Save(path, {MessageAnswer::Ok});
  ExpectBox("File exists. Replace it?", MessageButtons::OkCancel);
  EXPECT_EQ(JpegOf(PlacePicture(100, 80), 100), FileBytes(path));
}

TEST_F(PictureOpenSave, AnsweringCancelKeepsTheLastJpegAsThePicture) {
  ChoosePicture(100, 80);
  Compress("30");
  Save(File("out.jpg", "old"), {MessageAnswer::Cancel});
  EXPECT_TRUE(state_.JpegCurrent);
}

TEST_F(PictureOpenSave, AFailedSaveIsToldBeforeTheViewerComesBack) {
  ChoosePicture(100, 80);
  int told = 0;
  Dialogs().WhileShown = [&] { told += viewer_.isVisible() ? 0 : 1; };
  state_.JpegCurrent = true;
  Save(test_.Path("no/such/folder/out.jpg"));
  ExpectBox("Error saving file.");
  EXPECT_EQ(2, told);  // the dialog and the box
  EXPECT_TRUE(viewer_.isVisible());
  EXPECT_FALSE(state_.JpegCurrent);
  EXPECT_FALSE(window_.Busy);
}

TEST_F(PictureOpenSave, CompressOneOpenAnotherAndSaveWritesTheOther) {
  ChooseOneColor("a.bmp", Qt::red);
  Compress("80");
  ChooseOneColor("b.bmp", Qt::green);
  EXPECT_FALSE(state_.JpegCurrent);
  const QImage shown = Shown();
  Save(test_.Path("out.jpg"));
  EXPECT_EQ(JpegOf(shown, 100), FileBytes(test_.Path("out.jpg")));
  EXPECT_EQ(QColor(Qt::green), PixelShown(0, 0));
}

TEST_F(PictureOpenSave, AnOpenThatCameToNothingLeavesTheLastJpegAsThePicture) {
  ChooseOneColor("a.bmp", Qt::red);
  Compress("80");
  Choose("");
  EXPECT_TRUE(state_.JpegCurrent);
  Choose(test_.Path("missing.bmp"));
  EXPECT_TRUE(state_.JpegCurrent);
}

TEST_F(PictureOpenSave, AFailedSaveKeepsTheOldFile) {
  ChoosePicture(100, 80);
  // A folder in a file's place stops whoever wants to write it.
  ASSERT_TRUE(QDir().mkpath(Scratch("cvtemp.bmp") + "/x"));
  const QString path = File("out.jpg", "old");
  Save(path, {MessageAnswer::Ok});
  EXPECT_EQ((QStringList{"File exists. Replace it?", "Error saving file."}), TakeMessages());
  EXPECT_EQ("old", FileBytes(path));
  EXPECT_EQ(PlacePicture(100, 80), Shown());
  EXPECT_TRUE(viewer_.isVisible());
}

// The click waits until messages run, which they do while a JPEG is made.
TEST_F(PictureOpenSave, CloseWhileAJpegIsMadeClosesThePictureToo) {
  for (QPushButton* button : {window_.bClosePicEdit, window_.bCloseIm}) {
    window_.Open();
    ChoosePicture(100, 80);
    // Behind the dialog, and before the pass of messages.
    Dialogs().WhileShown = [&] { QMetaObject::invokeMethod(button, &QPushButton::click, Qt::QueuedConnection); };
    Save(test_.Path("out.jpg"), {MessageAnswer::Ok});
    Dialogs().WhileShown = nullptr;
    EXPECT_EQ(button == window_.bCloseIm, window_.isVisible());
    EXPECT_FALSE(viewer_.isVisible());
    EXPECT_FALSE(IsOnTop());
    EXPECT_FALSE(window_.Busy);
    EXPECT_TRUE(QFile::exists(test_.Path("out.jpg")));
    EXPECT_EQ(nullptr, button == window_.bCloseIm ? nullptr : viewer_.Owner());
  }
}

// --- dropping a file

class PictureDrop : public PictureWindowTest {
 protected:
  // Drags the files over a window and lets them go, with the key held that means to move them; tells whether it would
  // take them.
  bool Drop(QWidget& window, const QList<QUrl>& files) {
    QMimeData data;
    data.setUrls(files);
    constexpr auto offered = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(QPoint(5, 5), offered, &data, Qt::LeftButton, Qt::ShiftModifier);
    EXPECT_EQ(Qt::MoveAction, enter.proposedAction());
    enter.ignore();
    QApplication::sendEvent(&window, &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent drop(QPointF(5, 5), offered, &data, Qt::LeftButton, Qt::ShiftModifier);
    QApplication::sendEvent(&window, &drop);
    // Whoever gives a file to be moved deletes it then.
    EXPECT_TRUE(drop.isAccepted());
    for (const QDropEvent& event : {std::cref<QDropEvent>(enter), std::cref(drop)})
      EXPECT_EQ(Qt::CopyAction, event.dropAction());
    QApplication::processEvents();
    return true;
  }
};

TEST_F(PictureDrop, AFileThatIsDroppedIsOpenedLikeAChosenOne) {
  const QString first = File("a.bmp", EncodedPicture(PlacePicture(60, 40), "bmp"));
  const QString second = File("b c.bmp", EncodedPicture(PlacePicture(30, 20), "bmp"));
  EXPECT_TRUE(Drop(window_, {QUrl::fromLocalFile(first)}));
  EXPECT_EQ(PlacePicture(60, 40), Shown());
  EXPECT_EQ(first, Caption());
  EXPECT_TRUE(IsOnTop());
  Drag({10, 10}, {30, 30});
  state_.JpegCurrent = true;
  // And on the picture, which lies over the editor.
  EXPECT_TRUE(Drop(viewer_, {QUrl::fromLocalFile(second)}));
  EXPECT_EQ(PlacePicture(30, 20), Shown());
  EXPECT_FALSE(state_.CropDefined);
  EXPECT_FALSE(state_.JpegCurrent);
  EXPECT_TRUE(Messages().isEmpty());
}

TEST_F(PictureDrop, OnlyOneFileOfThisMachineIsTaken) {
  EXPECT_FALSE(Drop(window_, {QUrl("https://example.org/a.jpg")}));
  EXPECT_FALSE(Drop(window_, {QUrl::fromLocalFile("/a.jpg"), QUrl::fromLocalFile("/b.jpg")}));
  EXPECT_FALSE(Drop(window_, {}));
  EXPECT_TRUE(Drop(window_, {QUrl::fromLocalFile(File("text.jpg", "no picture"))}));
  ExpectBox("Error loading image file.");
}

TEST_F(PictureDrop, WhileACommandRunsOrTheEditorIsClosedNothingIsOpened) {
  const QString path = File("a.bmp", EncodedPicture(PlacePicture(60, 40), "bmp"));
  window_.Busy = true;
  Drop(window_, {QUrl::fromLocalFile(path)});
  EXPECT_FALSE(viewer_.isVisible());
  window_.Busy = false;
  window_.bClosePicEdit->click();
  EXPECT_FALSE(viewer_.acceptDrops());
  Drop(viewer_, {QUrl::fromLocalFile(path)});
  EXPECT_FALSE(viewer_.isVisible());
  window_.Open();
  EXPECT_TRUE(viewer_.acceptDrops());
}

TEST_F(PictureOpenSave, SavingRemovesTheSnapshotSoUndoHasNothingAfterACopy) {
  ChoosePicture(100, 80);
  Compress("30");
  Save(test_.Path("out.jpg"));
  EXPECT_FALSE(Has("cvtemp.bmp"));
  window_.bUnDo->click();
  ExpectBox("Only one level of undo.");
}

TEST_F(PictureOpenSave, ASecondSaveEncodesAnewWhatIsOnShow) {
  ChoosePicture(100, 80);
  Compress("30");
  const QImage shown = Shown();
  const QByteArray compressed = FileBytes(Scratch("cvtemp.jpg"));
  Save(test_.Path("one.jpg"));
  Save(test_.Path("two.jpg"));
  EXPECT_EQ(compressed, FileBytes(test_.Path("one.jpg")));
  EXPECT_EQ(JpegOf(shown, 100), FileBytes(test_.Path("two.jpg")));
}

}  // namespace
