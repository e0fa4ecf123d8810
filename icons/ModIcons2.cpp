#include "ModIcons2.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QPainter>

#include "AsciiText.h"
#include "IconColors.h"
#include "IconFile.h"
#include "IconReader.h"
#include "IconSurfaces.h"
#include "ReadPicture.h"

namespace {

template <typename Change>
void ChangeEachPixel(Surface& surface, const Change& change) {
  surface.Draw(surface.rect(), [&](QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
      auto* const line = reinterpret_cast<QRgb*>(image.scanLine(y));
      for (int x = 0; x < image.width(); ++x) line[x] = change(line[x]);
    }
  });
}

void LoadReduced(Surface& surface, QRgb background, const QImage& picture) {
  surface.ClearPicture();
  surface.SetBackground(background);
  surface.SetPicture(picture);
  ReduceTo16(surface);
}

// A bitmap has no transparency of its own, and of a large one only the top left is ever seen.
QImage ClipboardBitmap() {
  const QClipboard* const clipboard = QGuiApplication::clipboard();
  const QMimeData* const content = clipboard->mimeData(QClipboard::Clipboard);
  if (!content || !content->hasImage()) return QImage();
  QImage image = clipboard->image(QClipboard::Clipboard);
  image.setDevicePixelRatio(1);
  const QRect part = image.rect() & QRect(0, 0, kIconSide, kIconSide);
  QImage opaque(part.size(), QImage::Format_RGB32);
  opaque.fill(Qt::white);
  if (!opaque.isNull()) QPainter(&opaque).drawImage(QPoint(0, 0), image, part);
  return opaque;
}

}  // namespace

void WriteIconFile(const IconSurfaces& surfaces, const QString& Path) {
  const QByteArray bytes = IconFileBytes(surfaces.Pic1Black->Image(), surfaces.Pic2->Image());
  const bool isNew = !QFile::exists(Path);
  QFile file(Path);
  // Reading too, or the old file would be shortened.
  if (!file.open(QIODevice::ReadWrite)) return;
  // A new one that the disk has no room for isn't left there as a stump.
  if ((file.write(bytes) != bytes.size() || !file.flush()) && isNew) file.remove();
}

bool OpenImage(IconSurfaces& surfaces, const QString& Path) {
  const bool isIcon = UpperAscii(Path.right(3)) == u"ICO";
  const QImage picture = PictureForIcon(PictureFileBytes(Path));
  if (picture.isNull()) return !isIcon;  // the surfaces stay blank
  LoadReduced(*surfaces.Pic1, PixelOf(TransparentColor), picture);
  LoadReduced(*surfaces.Pic1Black, PixelOf(0), picture);
  surfaces.ShowAtWork();
  surfaces.Pic2->ClearPicture();
  surfaces.Pic2->SetBackground(Qt::white);
  if (isIcon) return LoadIconMask(surfaces, Path);
  // Of a picture only its size counts: it is opaque.
  Surface& measure = *surfaces.PicAuto;
  measure.SetAutoSize(true);
  measure.SetPicture(picture);
  measure.SetAutoSize(false);
  measure.ClearPicture();
  measure.SetBackground(Qt::black);
  surfaces.Pic2->TakeImageOf(measure);
  return true;
}

bool PasteImage(IconSurfaces& surfaces) {
  const QImage bitmap = ClipboardBitmap();
  if (bitmap.isNull()) return false;
  surfaces.PicAuto->SetAutoSize(true);
  surfaces.PicAuto->SetPicture(bitmap);
  QGuiApplication::clipboard()->clear(QClipboard::Clipboard);
  surfaces.TakeSnapshot();
  for (Surface* plane : {surfaces.Pic1, surfaces.Pic1Black}) {
    plane->TakeImageOf(*surfaces.PicAuto);
    ReduceTo16(*plane);
  }
  surfaces.Pic2->ClearPicture();
  surfaces.Pic2->SetBackground(Qt::black);
  surfaces.ShowAtWork();
  return true;
}

bool LoadIconMask(IconSurfaces& surfaces, const QString& Path) {
  const auto mask = MaskOfIcon(PictureFileBytes(Path));
  if (!mask) return false;
  surfaces.Pic2->Draw(surfaces.Pic2->rect(), [&](QImage& image) { image = *mask; });
  HardenMask(*surfaces.Pic2);
  return true;
}

void HardenMask(Surface& mask) {
  constexpr qint32 firstWhite = 0xFEFEFF;
  ChangeEachPixel(mask, [](QRgb pixel) { return ColorOf(pixel) < firstWhite ? qRgb(0, 0, 0) : qRgb(255, 255, 255); });
}

void ReduceTo16(Surface& surface) {
  ChangeEachPixel(surface, [](QRgb pixel) { return IconColors()[std::size_t(NearestIconColor(pixel))]; });
}
