// What the icon editor takes from a picture file's bytes, which may be anything: the picture that it loads, and the
// mask of an icon. Of an icon file with several images that of 32 by 32 pixels counts, or else the first one, brought
// to that size pixel by pixel; picture and mask come from the same image.
#pragma once

#include <QByteArray>
#include <QImage>
#include <optional>

// At most 32 by 32 pixels: of a larger picture the top left. Null when the bytes are no picture.
QImage PictureForIcon(const QByteArray& bytes);

// 32 by 32 pixels in RGB32, white where the icon is see-through and black elsewhere. An image with a transparency of
// its own and no mask, stored as PNG or with 32 bits a pixel, is see-through where nothing of it is to be seen. Nothing
// when the bytes are no icon or its image has neither.
std::optional<QImage> MaskOfIcon(const QByteArray& bytes);
