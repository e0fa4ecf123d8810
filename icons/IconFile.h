// The one form of icon that the program writes: an image of 32 by 32 pixels in 16 colours with a mask of one bit, in a
// file of exactly 766 bytes. Its last 744 bytes are what a web-pack carries.
#pragma once

#include <QByteArray>
#include <QImage>

inline constexpr int kIconSide = 32;  // pixels

// `colors` and `mask` are 32 by 32 pixels. Every colour becomes the nearest of the 16; white in the mask is
// see-through.
QByteArray IconFileBytes(const QImage& colors, const QImage& mask);
