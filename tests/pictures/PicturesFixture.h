#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

#include "ModPics.h"
#include "PictureFiles.h"
#include "ReadPicture.h"
#include "TestPlatform.h"

// A viewer and what works on it, on a screen of 1024 by 768 pixels of which the editor's frame takes 100.
class PicturesTest : public ::testing::Test {
 protected:
  PicturesTest() {
    pics_.Screen = [] { return QRect(0, 0, 1024, 768); };
    pics_.FrPicEditHeight = [] { return 1500.0; };
    const auto keep = [this](auto signal, QString& text) {
      QObject::connect(&viewer_.Notices, signal, &viewer_, [this, &text](const QString& told) {
        text = told;
        ++notices_;
      });
    };
    keep(&PictureNotices::tWd, tWd_);
    keep(&PictureNotices::tHt, tHt_);
    keep(&PictureNotices::tSz, tSz_);
    keep(&PictureNotices::tJSz, tJSz_);
    keep(&PictureNotices::LabCropSize, labCropSize_);
  }

  QString File(const QString& name, const QByteArray& bytes) {
    EXPECT_TRUE(PutFile(test_.Path(name), bytes));
    return test_.Path(name);
  }
  // Opens a picture in which every pixel tells its place.
  void Open(int width, int height) {
    ASSERT_TRUE(pics_.OpenPictureFile(File("open.bmp", EncodedPicture(PlacePicture(width, height), "bmp"))));
  }
  void OpenOneColor(const QString& name, QColor color, QSize size = QSize(60, 40)) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    ASSERT_TRUE(pics_.OpenPictureFile(File(name, EncodedPicture(image, "bmp"))));
  }

  void Drag(QPoint from, QPoint to) {
    viewer_.Pic_MouseDown(from);
    viewer_.Pic_MouseMove(to);
    viewer_.Pic_MouseUp(to);
  }

  QString Scratch(const char* name) const { return test_.program.AppPath + '/' + name; }
  bool Has(const char* name) const { return QFile::exists(Scratch(name)); }
  QImage Shown() const { return viewer_.Pic->Image(); }
  QColor PixelShown(int x, int y) const { return Shown().pixelColor(x, y); }
  QString Caption() const { return viewer_.windowTitle(); }
  QStringList Messages() const { return test_.platform.dialogs.Messages(); }

  TestProgram test_;
  fBitmap viewer_;
  ModPics pics_{test_.program, viewer_};
  PictureState& state_ = viewer_.State;

  QString tWd_ = "-", tHt_ = "-", tSz_ = "-", tJSz_ = "-", labCropSize_ = "-";
  int notices_ = 0;
};

inline const char* const kCutCaption = "Note: Image has been cropped to fit screen.";
