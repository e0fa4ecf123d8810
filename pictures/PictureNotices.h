#pragma once

#include <QObject>
#include <QString>

// What the picture routines tell the windows that show it. A signal with a control's name gives that control's new
// text.
class PictureNotices : public QObject {
  Q_OBJECT

 signals:
  // Width and height in pixels, sizes of the opened file and of the last JPEG in KB.
  void tWd(const QString& text);
  void tHt(const QString& text);
  void tSz(const QString& text);
  void tJSz(const QString& text);
  // Size of the crop rectangle, "10 X 20".
  void LabCropSize(const QString& text);
  // The tool window is to go, if it is on show.
  void HideToolsRequested();
  // Somebody has dropped a file on the picture.
  void FileDropped(const QString& path);
};
