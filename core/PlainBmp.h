#pragma once

#include <QImage>

class QIODevice;

// Reads a bitmap file of the commonest form, which the program itself writes: the 40-byte header, 24 bits a pixel,
// nothing compressed, stored from the bottom. The image has the file's own pixels, 24 bits with blue first, and its
// resolution. A null image, with the device at any place, comes back for every other form, a file that is cut off and a
// picture too large to be held; what those are is for the general reader to say, which takes four times as long and on
// which a JPEG would take half as long again as that of another program (the figure `jpeg`).
QImage ReadPlainBmp(QIODevice& device);
