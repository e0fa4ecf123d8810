#pragma once

#include <QByteArray>
#include <QSize>

// The kinds of picture files that the program reads, told by a file's first bytes and never by its name.
enum class PictureFormat { None, Bmp, Gif, Ico, Jpeg, Png };

PictureFormat PictureFormatOf(const QByteArray& bytes);

// The image reader's own name for the format; "" for None.
QByteArray FormatName(PictureFormat format);

// True when the file goes on to the end of its (first) picture, as its own lengths and end marks tell it. The decoders
// themselves would fill up what is missing. What follows behind the picture plays no part.
bool IsWholePicture(const QByteArray& bytes, PictureFormat format);

// What the program holds of one picture: sides below 30,000 and up to 64 million pixels.
bool IsHoldableSize(QSize pixels);
