// The 744 bytes that are an icon's image in a web-pack: a bitmap header, 16 colours, the pixels and the mask.
#pragma once

#include <QByteArray>
#include <QPixmap>

inline constexpr qsizetype kIconHeadSize = 22;
inline constexpr qsizetype kIconImageSize = 744;

// The whole icon file around an image: directory and one entry of 32 by 32 pixels and 16 colours.
QByteArray IconFileOf(const QByteArray& image);

// The icon as it is seen; null when the bytes are no image.
QPixmap PictureOfIconImage(const QByteArray& image);
