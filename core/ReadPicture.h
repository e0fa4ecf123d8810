#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

#include "PictureFormat.h"

// Decoding of picture files within bounds: BMP, GIF (its first frame), ICO (its first image), JPEG (upright, as its
// camera tells) and PNG. The content decides, not the name. A null image comes back for a file that is missing, no
// plain file, empty, cut off, of another kind, larger than the bounds, or can't be decoded.
QImage ReadPicture(const QString& path);
QImage PictureFromBytes(const QByteArray& bytes);

// Told by the content as well; None for what is no plain file.
PictureFormat FormatOfFile(const QString& path);

// A file's bytes; none for what is missing, no plain file, or longer than any picture.
QByteArray PictureFileBytes(const QString& path);
