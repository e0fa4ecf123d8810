#pragma once

#include <QSize>

// Whether a picture of that size can be held: there is memory for it and a copy, at 4 bytes a pixel, and its sides are
// no longer than a window's can be. Up to 16 million pixels nobody is asked.
bool IsHoldableSize(QSize pixels);

// Whether a file of so many bytes can be a picture of that size, as far as one above 64 million pixels goes: no
// compression of today's formats puts 4096 pixels of a photo or drawing into a byte. Keeps out files that are made to
// take all memory.
bool IsPlausibleSize(QSize pixels, qint64 fileBytes);
