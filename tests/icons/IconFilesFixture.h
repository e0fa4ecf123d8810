// The icon editor with files of icons and pictures, and the clipboard.
#pragma once

#include <QMimeData>

#include "CheckIconFile.h"
#include "IconBytes.h"
#include "IconFixture.h"
#include "PictureFiles.h"

class IconFilesTest : public IconTest {
 protected:
  int Check(const QString& path) {
    QString message;
    return CheckIconFile(test_.program.Files, path, message);
  }
  static quint32 Number(const QByteArray& bytes, int at, int length) {
    quint32 number = 0;
    for (int i = length - 1; i >= 0; --i) number = number << 8 | quint8(bytes[at + i]);
    return number;
  }
  // Whose images are stored as PNG.
  static QByteArray PngIcon(const QList<QImage>& pictures) {
    QByteArray file(6 + 16 * pictures.size(), '\0');
    file[2] = 1;
    file[4] = char(pictures.size());
    for (qsizetype at = 0; at < pictures.size(); ++at) {
      const QByteArray png = EncodedPicture(pictures[at], "png");
      const int entry = int(6 + 16 * at);
      file[entry] = file[entry + 1] = char(pictures[at].width());
      PutLittle(file, entry + 8, quint32(png.size()), 4);
      PutLittle(file, entry + 12, quint32(file.size()), 4);
      file += png;
    }
    return file;
  }
  static QImage Picture(int width, int height, QColor color = Qt::red) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(color);
    return image;
  }
  QString Bmp(int width, int height) { return File("picture.bmp", EncodedPicture(Picture(width, height), "bmp")); }
  bool OpenImageOf(const QByteArray& bytes, const QString& name = "a.ico") {
    editor_.ClearImage();
    return OpenImage(editor_.Surfaces, File(name, bytes));
  }
  static void PutOnClipboard(const QImage& image) {
    QGuiApplication::clipboard()->setImage(image, QClipboard::Clipboard);
  }
  static bool ClipboardIsEmpty() {
    const QMimeData* const content = QGuiApplication::clipboard()->mimeData(QClipboard::Clipboard);
    return !content || content->formats().isEmpty();
  }
  // That of an icon with HalfRed on it, in the file's form.
  void ExpectHalfRed() {
    EXPECT_EQ(QRect(16, 0, 16, 32), OpaqueRect());
    EXPECT_EQ(512, Opaque().size());
    const QImage seen = Plane(planes_.Pic1), colors = Plane(planes_.Pic1Black);
    EXPECT_EQ(qRgb(255, 0, 0), seen.pixel(16, 0));
    EXPECT_EQ(qRgb(255, 255, 255), seen.pixel(3, 3));
    EXPECT_EQ(qRgb(255, 0, 0), colors.pixel(20, 20));
    EXPECT_EQ(qRgb(0, 0, 255), colors.pixel(31, 31));
    EXPECT_EQ(qRgb(0, 0, 0), colors.pixel(15, 31));
  }
};
