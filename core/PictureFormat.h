#pragma once

#include <QByteArray>

class QIODevice;

// The kinds of picture files that the program reads, told by a file's first bytes and never by its name.
enum class PictureFormat { None, Bmp, Gif, Ico, Jpeg, Png };

PictureFormat PictureFormatOf(const QByteArray& bytes);

// The image reader's own name for the format; "" for None.
QByteArray FormatName(PictureFormat format);

// True when a bitmap or the first picture of a GIF is whole, as its own lengths and end marks tell it, since their
// decoders would fill up what is missing. Those of the other formats tell, but for JPEG, of which everybody shows what
// is there; these are always true. What follows behind the picture plays no part, and the device stands anywhere after
// it.
bool IsWholePicture(QIODevice& device, PictureFormat format);
