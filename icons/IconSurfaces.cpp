#include "IconSurfaces.h"

#include "IconColors.h"
#include "IconFile.h"

namespace {

constexpr int kWorkSide = kIconSide * kCellSide;

Surface* NewSurface(const char* name, int side, QWidget* window) {
  auto* surface = new Surface(QLatin1String(name), window);
  surface->setFixedSize(side, side);
  surface->hide();
  return surface;
}

void Blank(Surface* surface, QColor color) {
  surface->ClearPicture();
  surface->SetBackground(color);
}

}  // namespace

IconSurfaces::IconSurfaces(QWidget* window)
    : Pic1(NewSurface("Pic1", kIconSide, window)),
      Pic1Black(NewSurface("Pic1Black", kIconSide, window)),
      Pic2(NewSurface("Pic2", kIconSide, window)),
      PicBig(NewSurface("PicBig", kWorkSide, window)),
      Pic1A(NewSurface("Pic1A", kIconSide, window)),
      Pic1BlackA(NewSurface("Pic1BlackA", kIconSide, window)),
      Pic2A(NewSurface("Pic2A", kIconSide, window)),
      PicBig2(NewSurface("PicBig2", kWorkSide, window)),
      PicAuto(new Surface(QStringLiteral("PicAuto"), window)),
      PicSize(NewSurface("PicSize", kIconSide, window)) {
  PicAuto->hide();
  Pic1->show();
  PicBig->show();
  Clear();
}

void IconSurfaces::Clear() {
  Blank(Pic1, PixelOf(TransparentColor));
  Blank(PicBig, PixelOf(TransparentColor));
  Blank(Pic2, Qt::white);
  Blank(Pic1Black, Qt::black);
}

void IconSurfaces::TakeSnapshot() {
  PicBig2->TakeImageOf(*PicBig);
  Pic1A->TakeImageOf(*Pic1);
  Pic2A->TakeImageOf(*Pic2);
  Pic1BlackA->TakeImageOf(*Pic1Black);
}

void IconSurfaces::BringSnapshotBack() {
  PicBig->TakeImageOf(*PicBig2);
  Pic1->TakeImageOf(*Pic1A);
  Pic2->TakeImageOf(*Pic2A);
  Pic1Black->TakeImageOf(*Pic1BlackA);
}

void IconSurfaces::ShowAtWork() {
  PicBig->Draw(PicBig->rect(), [this](QImage& image) {
    image = Pic1->Image().scaled(kWorkSide, kWorkSide, Qt::IgnoreAspectRatio, Qt::FastTransformation);
  });
}
