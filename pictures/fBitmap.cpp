#include "fBitmap.h"

#include <QApplication>
#include <QDragEnterEvent>
#include <QWindow>
#include <algorithm>
#include <cmath>

#include "CropBand.h"
#include "DroppedFile.h"
#include "Numbers.h"
#include "ViewerScroll.h"
#include "WindowPlace.h"

namespace {

QPoint Pixel(float x, float y) {
  return QPoint(int(RoundEven(x)), int(RoundEven(y)));
}

QString Whole(float length) {
  return QString::number(int(RoundEven(std::abs(length))));
}

}  // namespace

fBitmap::fBitmap()
    : ShellWindow(QStringLiteral("fBitmap"), QStringLiteral("Use This Picture?")),
      Pic(new Surface(QStringLiteral("Pic"), this)),
      PicX(new Surface(QStringLiteral("PicX"), this)),
      band_(new CropBand(*Pic)),
      scroll_(new ViewerScroll(*Pic)) {
  // As a dialog it stays above the window to which the editor ties it.
  setWindowFlags(Qt::Dialog);
  setAttribute(Qt::WA_ShowWithoutActivating);
  Pic->setCursor(Qt::CrossCursor);
  PicX->hide();
  connect(Pic, &Surface::MouseDown, this, [this](Qt::MouseButton, QPoint at) { Pic_MouseDown(at); });
  connect(Pic, &Surface::MouseMove, this, [this](QPoint at) {
    Pic_MouseMove(at);
    if (State.CropDragging) scroll_->Follow(at);
  });
  connect(scroll_, &ViewerScroll::Dragged, this, &fBitmap::Pic_MouseMove);
  connect(Pic, &Surface::MouseUp, this, [this](Qt::MouseButton, QPoint at) {
    scroll_->Stop();
    Pic_MouseUp(at);
  });
}

std::optional<QMargins> fBitmap::Edges() const {
  // A widget may have missed the frame that its window was given; the window knows it, also while it's hidden.
  if (windowHandle() && !windowHandle()->frameMargins().isNull()) return windowHandle()->frameMargins();
  std::optional<QMargins> edges;
  for (const QWidget* window : QApplication::topLevelWidgets()) {
    const auto others = EdgesOf(*window);
    if (!others) continue;
    edges = others;
    if (Owner() && window->windowHandle() == Owner()) break;
  }
  return edges;
}

QSize fBitmap::Border() const {
  return QSize(0, 0).grownBy(Edges().value_or(QMargins()));
}

void fBitmap::MoveFrame(QPoint corner) {
  MoveWithEdges(*this, corner, Edges());
}

void fBitmap::TieTo(QWidget* owner) {
  winId();
  windowHandle()->setTransientParent(owner ? owner->window()->windowHandle() : nullptr);
}

QWindow* fBitmap::Owner() const {
  return windowHandle() ? windowHandle()->transientParent() : nullptr;
}

void fBitmap::DrawBand(QPoint corner, QPoint opposite) {
  Pic->ClearDrawings();
  Pic->InvertRectangle(corner, opposite);
  band_->Follow(corner, opposite);
}

void fBitmap::Pic_MouseDown(QPoint at) {
  emit Notices.LabCropSize(QString());
  Pic->ClearDrawings();
  State.CropDefined = false;
  State.CropX0 = float(at.x());
  State.CropY0 = float(at.y());
  State.CropDragging = true;
}

void fBitmap::Pic_MouseMove(QPoint at) {
  if (!State.CropDragging) return;
  DrawBand(Pixel(State.CropX0, State.CropY0), at);
  // The size as dragged; what lies outside of the picture counts.
  emit Notices.LabCropSize(Whole(State.CropX0 - float(at.x())) + QStringLiteral(" X ") +
                           Whole(State.CropY0 - float(at.y())));
}

void fBitmap::Pic_MouseUp(QPoint at) {
  if (float(at.x()) == State.CropX0 || float(at.y()) == State.CropY0) {
    Pic->ClearDrawings();
    State.CropDragging = false;
    return;
  }
  if (State.CropDragging) {
    // A picture without an area has the one place 0.
    const auto clamp = [](float value, int length) { return std::clamp(value, 0.0F, float(std::max(length - 1, 0))); };
    State.CropX0 = clamp(State.CropX0, Pic->width());
    State.CropX1 = clamp(float(at.x()), Pic->width());
    State.CropY0 = clamp(State.CropY0, Pic->height());
    State.CropY1 = clamp(float(at.y()), Pic->height());
    DrawBand(Pixel(State.CropX0, State.CropY0), Pixel(State.CropX1, State.CropY1));
  }
  State.CropDragging = false;
  State.CropDefined = true;
}

void fBitmap::dragEnterEvent(QDragEnterEvent* event) {
  if (!DroppedFile(*event).isEmpty()) AcceptCopy(*event);
}

void fBitmap::dropEvent(QDropEvent* event) {
  AcceptCopy(*event);
  emit Notices.FileDropped(DroppedFile(*event));
}
