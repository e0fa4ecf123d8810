#include "PictureFiles.h"

#include <QBuffer>
#include <QImageWriter>
#include <algorithm>

namespace {

// Codes of three bits. Every two pixels the table is cleared, so that it never grows.
QByteArray GifCodes(int pixels, int color) {
  constexpr int clear = 4, end = 5;
  QByteArray bytes;
  int filled = 0, held = 0;
  const auto put = [&](int code) {
    held |= code << filled;
    filled += 3;
    if (filled < 8) return;
    bytes += char(held);
    held >>= 8;
    filled -= 8;
  };
  for (int at = 0; at < pixels; ++at) {
    if (at % 2 == 0) put(clear);
    put(color);
  }
  put(end);
  if (filled > 0) bytes += char(held);
  return bytes;
}

QByteArray Short(int value) {
  QByteArray bytes(2, '\0');
  PutLittle(bytes, 0, quint32(value), 2);
  return bytes;
}

QImage SeeThrough() {
  QImage image(16, 16, QImage::Format_ARGB32);
  image.fill(QColor(255, 0, 0, 128));
  image.setPixelColor(0, 0, Qt::transparent);
  return image;
}

}  // namespace

QImage PlacePicture(int width, int height) {
  QImage image(width, height, QImage::Format_RGB32);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) image.setPixel(x, y, qRgb(x % 256, y % 256, (x / 256) * 16 + y / 256));
  return image;
}

QByteArray EncodedPicture(const QImage& image, const char* format) {
  QBuffer buffer;
  return QImageWriter(&buffer, format).write(image) ? buffer.data() : QByteArray();
}

QByteArray TurnedJpeg(const QImage& image) {
  QByteArray bytes = EncodedPicture(image, "jpg");
  // Orientation 6 in a camera's block: to be turned to the right.
  return bytes.insert(2, QByteArray("\xFF\xE1\0\x22"
                                    "Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0",
                                    36));
}

QByteArray GifFile(int width, int height, const QList<GifColor>& frames, bool transparent) {
  QByteArray file = "GIF89a" + Short(width) + Short(height) + QByteArray("\x81\0\0", 3);
  file += QByteArray("\0\0\0\xFF\xFF\xFF\xFF\0\0\0\xFF\0", 12);
  for (const GifColor frame : frames) {
    file += QByteArray("\x21\xF9\x04", 3) + char(transparent ? 1 : 0) + Short(10) + char(frame) + '\0';
    file += ',' + Short(0) + Short(0) + Short(width) + Short(height) + '\0' + '\x02';
    const QByteArray codes = GifCodes(width * height, int(frame));
    for (qsizetype at = 0; at < codes.size(); at += 255) {
      const QByteArray block = codes.mid(at, 255);
      file += char(block.size()) + block;
    }
    file += '\0';
  }
  return file + ';';
}

QList<PictureSample> PictureSamples() {
  const QImage image = PlacePicture(20, 15);
  const QImage many = PlacePicture(70, 50);
  QByteArray fromTop = EncodedPicture(image, "bmp");
  PutLittle(fromTop, 22, quint32(-15), 4);
  return {{"bmp", EncodedPicture(image, "bmp")},
          {"bmp of 256 colours", EncodedPicture(image.convertToFormat(QImage::Format_Indexed8), "bmp")},
          {"bmp of 2 colours", EncodedPicture(image.convertToFormat(QImage::Format_Mono), "bmp")},
          {"bmp from the top", fromTop},
          {"gif", GifFile(20, 15, {GifColor::Red})},
          {"gif with two frames", GifFile(20, 15, {GifColor::Red, GifColor::Green})},
          {"ico", EncodedPicture(SeeThrough(), "ico")},
          {"jpg", EncodedPicture(many, "jpg")},
          {"grey jpg", EncodedPicture(many.convertToFormat(QImage::Format_Grayscale8), "jpg")},
          {"turned jpg", TurnedJpeg(many)},
          {"png", EncodedPicture(image, "png")},
          {"see-through png", EncodedPicture(SeeThrough(), "png")},
          {"png of 256 colours", EncodedPicture(image.convertToFormat(QImage::Format_Indexed8), "png")}};
}

void PutLittle(QByteArray& bytes, int at, quint32 value, int length) {
  for (int i = 0; i < length; ++i) bytes[at + i] = char(value >> (8 * i));
}
void PutBig(QByteArray& bytes, int at, quint32 value, int length) {
  for (int i = 0; i < length; ++i) bytes[at + i] = char(value >> (8 * (length - 1 - i)));
}
