// Small pictures and their files, made in memory for the tests.
#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QList>

// A picture of which no two neighbours are alike, and each pixel tells its place: red is x, green is y.
QImage PlacePicture(int width, int height);

// The file of an image; `format` is "bmp", "jpg", "png" or "ico".
QByteArray EncodedPicture(const QImage& image, const char* format);

// A JPEG whose camera tells that it is to be turned to the right by a quarter.
QByteArray TurnedJpeg(const QImage& image);

// A GIF file of one frame for each colour, all black, white, red or green. A transparent one shows nothing.
enum class GifColor { Black, White, Red, Green };
QByteArray GifFile(int width, int height, const QList<GifColor>& frames, bool transparent = false);

// One file of each format, and some of their rarer forms.
struct PictureSample {
  const char* name;
  QByteArray bytes;
};
QList<PictureSample> PictureSamples();

// A number put into a file's bytes, lowest byte first or last.
void PutLittle(QByteArray& bytes, int at, quint32 value, int length);
void PutBig(QByteArray& bytes, int at, quint32 value, int length);
