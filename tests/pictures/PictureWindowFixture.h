#pragma once

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "FPic.h"
#include "PicturesFixture.h"
#include "StringTable.h"

// The picture editor's window with its viewer, on a screen of 1024 by 768 pixels.
class PictureWindowTest : public PicturesTest {
 protected:
  PictureWindowTest() {
    window_.SetPictures(pics_, viewer_);
    window_.Open();
  }

  ScriptedDialogs& Dialogs() { return test_.platform.dialogs; }
  QStringList TakeMessages() {
    const QStringList messages = Messages();
    Dialogs().Boxes.clear();
    return messages;
  }
  // Presses "Open File" and chooses; "" is Cancel.
  void Choose(const QString& path) {
    Dialogs().Texts = {path};
    window_.bGetPic->click();
  }
  // The same with a picture in which every pixel tells its place.
  void ChoosePicture(int width, int height, const char* name = "a.bmp") {
    Choose(File(name, EncodedPicture(PlacePicture(width, height), "bmp")));
  }
  void ChooseOneColor(const char* name, QColor color, QSize size = QSize(60, 40)) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    Choose(File(name, EncodedPicture(image, "bmp")));
  }
  // Presses "Save as JPG", chooses, and answers the question whether a file is to be replaced.
  void Save(const QString& path, QList<MessageAnswer> answers = {}) {
    Dialogs().Texts = {path};
    Dialogs().Answers = answers;
    window_.bSaveJPG->click();
  }
  void Resize(const QString& percent) {
    window_.tPercSize->setText(percent);
    window_.bResize->click();
  }
  void Compress(const QString& quality) {
    window_.tPercComp->setText(quality);
    window_.bCompress->click();
  }
  QByteArray JpegOf(const QImage& image, qint16 quality) {
    EXPECT_TRUE(image.save(test_.Path("made.bmp")));
    pics_.NView.MakeJpeg(test_.Path("made.bmp"), test_.Path("made.jpg"), quality);
    return FileBytes(test_.Path("made.jpg"));
  }
  // One box has been shown, and that is forgotten now.
  void ExpectBox(const QString& text, MessageButtons buttons = MessageButtons::Ok) {
    ASSERT_EQ(1, Dialogs().Boxes.size());
    const ScriptedDialogs::Box box = Dialogs().Boxes.takeFirst();
    EXPECT_EQ(text, box.text);
    EXPECT_EQ(MessageIcon::Information, box.icon);
    EXPECT_EQ(buttons, box.buttons);
    EXPECT_EQ("Corvane", box.title);
  }
  QStringList ReadOuts() const {
    return {window_.tWd->text(), window_.tHt->text(), window_.tSz->text(), window_.tJSz->text()};
  }
  bool IsOnTop() const { return viewer_.windowFlags().testFlag(Qt::WindowStaysOnTopHint); }

  FPic window_{test_.program};
};
