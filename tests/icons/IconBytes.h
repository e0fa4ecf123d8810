// Icon files as other programs make them, for the tests.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>

// An image of an icon file as a bitmap of 1, 4, 8, 24 or 32 bits a pixel. See-through pixels (alpha 0) are black and
// masked. The picture may have as many colours as the depth can hold.
QByteArray BitmapImage(const QImage& picture, int bits);

// A file of several images; each entry tells the size in the image's header.
QByteArray IconFileOf(const QList<QByteArray>& images);

// A picture in red whose left half is see-through, and a blue dot in the lower right corner.
QImage HalfRed(int side);
