// Writes a picture as a still GIF of up to 255 colours and one that is see-through.
#pragma once

#include <QByteArray>
#include <QImage>

// Pixels less than half opaque become see-through. Of a picture with more colours like ones are put together.
QByteArray GifFile(const QImage& picture);
