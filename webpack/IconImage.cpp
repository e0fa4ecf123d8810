#include "IconImage.h"

QByteArray IconFileOf(const QByteArray& image) {
  static const QByteArray head = QByteArray::fromHex("00000100010020201000010004 00e8020000 16000000");
  return head + image;
}

QPixmap PictureOfIconImage(const QByteArray& image) {
  QPixmap picture;
  if (image.size() == kIconImageSize) picture.loadFromData(IconFileOf(image), "ICO");
  return picture;
}
