#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include "PictureFormat.h"

// Decoding of picture files: BMP, GIF (its first frame), ICO (its first image), JPEG (upright, as its camera tells) and
// PNG, with their colours as sRGB where a colour profile says that they are others. The content decides, not the name.
// A JPEG whose end is missing gives what is there of it. A null image comes back for a file that is missing, no plain
// file, empty, of another kind, cut off, too large for the memory there is, or can't be decoded, and for one that
// claims more pixels than its bytes can hold.
QImage ReadPicture(const QString& path);
QImage PictureFromBytes(const QByteArray& bytes);

// Told by the content as well; None for what is no plain file.
PictureFormat FormatOfFile(const QString& path);

// A file's bytes; none for what is missing, no plain file, or longer than 1 GB.
QByteArray PictureFileBytes(const QString& path);
