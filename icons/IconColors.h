// The colours of the icon editor: the 16 that an icon file holds, and the one that stands for "see-through" on the
// screen. A colour is a number 0x00BBGGRR, as everywhere in the program, or a pixel of an image.
#pragma once

#include <QRgb>
#include <array>

// None of the 16; only the surfaces for the eye hold it.
inline constexpr qint32 TransparentColor = 0xE1E1E1;

// Those of the boxes to choose from, in their order, which isn't that of the file.
inline constexpr std::array<qint32, 16> kColorRow = {0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080,
                                                     0x008080, 0xC0C0C0, 0x808080, 0xFF0000, 0x00FF00, 0xFFFF00,
                                                     0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF};

QRgb PixelOf(qint32 color);
qint32 ColorOf(QRgb pixel);

// The file's colour table, in the file's order.
const std::array<QRgb, 16>& IconColors();

// Place in the table of the colour with the least squared distance, the first one of several.
int NearestIconColor(QRgb pixel);
