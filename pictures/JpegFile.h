// Makes JPEGs of images. At quality 100 each pixel keeps its own colour; below that four of them share one, as they do
// in the photos of cameras.
#pragma once

#include <QImage>

class QIODevice;

// Writes the image, which is taken for sRGB, at a quality of 1 to 100, with its resolution. False when there is no
// image or one with a side beyond 65,500 pixels, which no JPEG can have, when memory doesn't suffice, or when the
// device doesn't take all of it.
bool WriteJpeg(const QImage& image, int quality, QIODevice& device);
