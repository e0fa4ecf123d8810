#pragma once

#include <QImage>

class QIODevice;

// Reads a bitmap file of the commonest form, which the program itself writes: the 40-byte header, 24 bits a pixel,
// nothing compressed, stored from the bottom. The image has 24 bits a pixel and the file's resolution. A null image,
// with the device at any place, comes back for every other form, a file that is cut off and a picture too large to be
// held; what those are is for the general readers to say. They take thrice the time for a photo.
QImage ReadPlainBmp(QIODevice& device);
