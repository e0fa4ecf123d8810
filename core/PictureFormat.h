#pragma once

#include <QByteArray>

class QIODevice;

// The kinds of picture files that the program reads, told by a file's first bytes and never by its name.
enum class PictureFormat { None, Bmp, Gif, Ico, Jpeg, Png };

PictureFormat PictureFormatOf(const QByteArray& bytes);

// The image reader's own name for the format; "" for None.
QByteArray FormatName(PictureFormat format);

// True when a bitmap, the first picture of a GIF or a PNG, also one that an icon begins with, is whole, as its own
// lengths and end marks tell it: the first two decoders would fill up what is missing, and that of PNG takes memory for
// all that a file claims to have. Always true of JPEG, of which everybody shows what is there, and of other icons,
// whose decoder tells. What follows behind the picture plays no part, and the device stands anywhere after it.
bool IsWholePicture(QIODevice& device, PictureFormat format);
