// The icon editor's window, its dialogs and the files they lead to.
#pragma once

#include <QTest>

#include "IconBytes.h"
#include "IconFixture.h"
#include "PictureFiles.h"

class IconWindowTest : public IconTest {
 protected:
  QString Title() const { return editor_.windowTitle(); }
  QString IconPath(const QString& name) { return File(name, IconFileOf({BitmapImage(HalfRed(32), 4)})); }
  QString PicturePath(const QString& name) { return File(name, EncodedPicture(PlacePicture(40, 40), "bmp")); }
  ScriptedDialogs& Dialogs() { return test_.platform.dialogs; }
  bool IsHighlighted(int tool) const {
    return editor_.bOps[std::size_t(tool)]->palette().color(QPalette::Button) == QColor(PixelOf(ToolHighlight));
  }
  void MouseOn(QWidget* widget, Qt::MouseButton button) { QTest::mouseClick(widget, button); }
};
