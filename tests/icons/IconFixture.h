// The icon editor's window in a scratch folder, worked by mouse events on its work area.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QMouseEvent>
#include <QPushButton>
#include <QRadioButton>

#include "IconColors.h"
#include "IconFile.h"
#include "Swatch.h"
#include "TestPlatform.h"
#include "fIconMaker.h"

// Places of colours in the row of boxes.
enum ColorBox { Black = 0, DarkGreen = 2, DarkRed = 4, Blue = 9, Green = 10, Red = 12, Yellow = 14, White = 15 };

class IconTest : public ::testing::Test {
 protected:
  IconTest() { editor_.show(); }

  void Send(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons held) {
    QMouseEvent event(type, at, planes_.PicBig->mapToGlobal(at), button, held, Qt::NoModifier);
    QApplication::sendEvent(planes_.PicBig, &event);
  }
  void Press(QPoint at, Qt::MouseButton button = Qt::LeftButton) { Send(QEvent::MouseButtonPress, at, button, button); }
  void MoveTo(QPoint at, Qt::MouseButtons held = Qt::LeftButton) { Send(QEvent::MouseMove, at, Qt::NoButton, held); }
  void Release(QPoint at, Qt::MouseButton button = Qt::LeftButton) {
    Send(QEvent::MouseButtonRelease, at, button, Qt::NoButton);
  }

  // A place in the cell that is in that cell on both axes.
  static QPoint InCell(QPoint cell) { return cell * kCellSide + QPoint(2, 2); }
  // From cell to cell, without a move between.
  void Drag(QPoint from, QPoint to, Qt::MouseButton button = Qt::LeftButton) {
    Press(InCell(from), button);
    Release(InCell(to), button);
  }
  void Use(Tool tool) { editor_.bOps[std::size_t(tool)]->click(); }
  void UseColor(ColorBox box) { emit editor_.PCols[box]->pressed(); }
  void UseSeeThrough() { editor_.bTrans->click(); }
  void UseWidth(int width) { editor_.OpW[std::size_t(width - 1)]->click(); }

  // The pixels of the icon that are opaque.
  QList<QPoint> Opaque() const {
    QList<QPoint> points;
    const QImage mask = planes_.Pic2->Image();
    for (int y = 0; y < kIconSide; ++y)
      for (int x = 0; x < kIconSide; ++x)
        if ((mask.pixel(x, y) & 0xFFFFFF) == 0) points << QPoint(x, y);
    return points;
  }
  // The smallest rectangle round them.
  QRect OpaqueRect() const {
    QRect rect;
    for (const QPoint at : Opaque()) rect |= QRect(at, QSize(1, 1));
    return rect;
  }
  // Opaque pixels as rows of text from the top, without the empty border.
  QStringList OpaqueShape() const {
    const QRect rect = OpaqueRect();
    QStringList rows(rect.height(), QString(rect.width(), u'.'));
    for (const QPoint at : Opaque()) rows[at.y() - rect.top()][at.x() - rect.left()] = u'#';
    return rows;
  }
  bool UndoEnabled() const { return editor_.bUndo->isEnabled(); }
  static QImage Plane(const Surface* surface) { return surface->Image(); }
  QList<QImage> AllPlanes() const {
    return {Plane(planes_.Pic1), Plane(planes_.Pic1Black), Plane(planes_.Pic2), Plane(planes_.PicBig)};
  }
  bool IsBlank() const {
    return AllPlanes() == QList<QImage>{OneColor(PixelOf(TransparentColor)), OneColor(PixelOf(0)),
                                        OneColor(PixelOf(0xFFFFFF)),
                                        OneColor(PixelOf(TransparentColor), kIconSide * kCellSide)};
  }
  static QImage OneColor(QRgb color, int side = kIconSide) {
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(color);
    return image;
  }
  static QImage Enlarged(const QImage& image) {
    return image.scaled(kIconSide * kCellSide, kIconSide * kCellSide, Qt::IgnoreAspectRatio, Qt::FastTransformation);
  }
  // Holds for each pixel: see-through in all three planes, or opaque in all three.
  void ExpectPlanesAgree() const {
    const QImage seen = Plane(planes_.Pic1), colors = Plane(planes_.Pic1Black), mask = Plane(planes_.Pic2);
    for (int y = 0; y < kIconSide; ++y)
      for (int x = 0; x < kIconSide; ++x) {
        if ((mask.pixel(x, y) & 0xFFFFFF) == 0xFFFFFF) {
          ASSERT_EQ(PixelOf(TransparentColor), seen.pixel(x, y)) << x << ' ' << y;
          ASSERT_EQ(PixelOf(0), colors.pixel(x, y)) << x << ' ' << y;
        } else {
          ASSERT_EQ(PixelOf(0), mask.pixel(x, y)) << x << ' ' << y;
          ASSERT_EQ(seen.pixel(x, y), colors.pixel(x, y)) << x << ' ' << y;
        }
      }
  }

  QString File(const QString& name, const QByteArray& bytes) {
    EXPECT_TRUE(PutFile(test_.Path(name), bytes));
    return test_.Path(name);
  }
  // Through the dialog.
  QString Open(const QString& path) {
    test_.platform.dialogs.Texts = {path};
    editor_.mOpen();
    return path;
  }
  void SaveAs(const QString& path) {
    test_.platform.dialogs.Texts = {path};
    editor_.mSaveIco();
  }
  QByteArray Saved(const QString& name = "saved.ico") {
    QFile::remove(test_.Path(name));
    SaveAs(test_.Path(name));
    return FileBytes(test_.Path(name));
  }
  QStringList Messages() const { return test_.platform.dialogs.Messages(); }

  TestProgram test_;
  fIconMaker editor_{test_.program};
  const IconSurfaces& planes_ = editor_.Surfaces;
};
