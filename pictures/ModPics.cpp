#include "ModPics.h"

#include <QApplication>
#include <QScreen>
#include <QWindow>
#include <algorithm>

#include "Caption.h"
#include "MessagePass.h"
#include "Numbers.h"
#include "PathRules.h"
#include "PictureBounds.h"
#include "Program.h"
#include "ReadPicture.h"
#include "StringTable.h"
#include "Twips.h"
#include "WaitCursor.h"
#include "WindowOrder.h"

namespace {

constexpr double kTopOfCutWindow = 400;  // twips

QRect ScreenOf(const fBitmap& viewer) {
  const QWindow* const window = viewer.Owner();
  const QScreen* const screen = window ? window->screen() : QGuiApplication::primaryScreen();
  return screen ? screen->geometry() : QRect();
}

}  // namespace

ModPics::ModPics(Program& program, fBitmap& viewer)
    : NView(program, viewer), Screen([&viewer] { return ScreenOf(viewer); }), program_(program), viewer_(viewer) {}

bool ModPics::SizeViewer(qint32 W, qint32 H, double Reserved, const QString& Title) {
  const QRect screen = Screen();
  const double screenWidth = PixelsToTwips(screen.width());
  const double maxH = PixelsToTwips(screen.height()) - Reserved;
  if (!Title.isEmpty()) viewer_.setWindowTitle(CaptionOf(Title));
  const QSize border = viewer_.Border();
  double width = (double(W) + border.width()) * kTwipsPerPixel;
  double height = (double(H) + border.height()) * kTwipsPerPixel;
  bool cropped = false;
  if (height > maxH) {
    height = maxH;
    cropped = true;
    viewer_.setWindowTitle(StringText(FixedText::ImageCropped));
  }
  // A cut in width has the same caption and doesn't count as cropped.
  if (0.9 * screenWidth < width) {
    width = 0.9 * screenWidth;
    viewer_.setWindowTitle(StringText(FixedText::ImageCropped));
  }
  // Counted from the screen's own corner.
  const double left = (screenWidth - width) / 2;
  const double top = cropped ? kTopOfCutWindow : (maxH - height) / 2;
  viewer_.resize(std::max(TwipsToPixels(width) - border.width(), 0),
                 std::max(TwipsToPixels(height) - border.height(), 0));
  viewer_.MoveFrame(screen.topLeft() + QPoint(TwipsToPixels(left), TwipsToPixels(top)));
  viewer_.Pic->move(0, 0);
  viewer_.PicX->move(0, 0);
  return cropped;
}

bool ModPics::LoadIntoPic(const QString& path) {
  const WaitCursor wait;
  Surface& pic = *viewer_.Pic;
  pic.ClearPicture();
  pic.SetAutoSize(true);
  pic.show();
  return pic.LoadPicture(path);
}

void ModPics::SayLoadingFailed() {
  QWidget* const owner = viewer_.isVisible() ? &viewer_ : QApplication::activeWindow();
  program_.platform.dialogs.ShowMessage(owner, StringText(FixedText::ErrorLoadingImage));
}

bool ModPics::OpenPictureFile(const QString& Path) {
  viewer_.PicX->ClearPicture();
  viewer_.PicX->SetAutoSize(true);
  viewer_.PicX->hide();
  // The surface could show a PNG, but the editor opens none.
  const bool isPng = FormatOfFile(Path) == PictureFormat::Png;
  if (!LoadIntoPic(isPng ? QString() : Path)) {
    SayLoadingFailed();
    return false;
  }
  const QSize size = viewer_.Pic->size();
  ShowSize(size.width(), size.height());
  // The size of the last JPEG stays on show.
  emit viewer_.Notices.tSz(QString::number(FileSizeKb(Path)));
  SizeViewer(size.width(), size.height(), EditorHeight(), Path);
  emit viewer_.Notices.HideToolsRequested();
  viewer_.show();
  SetTopmost(&viewer_);
  return true;
}

std::optional<PictureSpec> ModPics::LoadPictureFile(const QString& Path, int Reserved, QWidget* owner) {
  viewer_.TieTo(owner);
  if (!LoadIntoPic(Path)) {
    viewer_.hide();
    SayLoadingFailed();
    return std::nullopt;
  }
  viewer_.State.JpegCurrent = false;  // the last JPEG was of the picture before
  const QSize size = viewer_.Pic->size();
  SizeViewer(size.width(), size.height(), Reserved, Path);
  viewer_.show();
  return PictureSpec{size.width(), size.height(), FileSizeKb(Path)};
}

void ModPics::HideViewer() {
  viewer_.hide();
}

void ModPics::ShowSize(int width, int height) {
  emit viewer_.Notices.tWd(QString::number(width));
  emit viewer_.Notices.tHt(QString::number(height));
}

// With whatever is drawn on the picture: a crop rectangle that is on show goes into the snapshot.
void ModPics::SaveSnapshot() {
  viewer_.Pic->SaveImage(NView.SnapshotPath());
  RunMessagePass();
}

void ModPics::CropPicture() {
  const WaitCursor wait;
  program_.Files.DeleteFileIfAny(NView.SnapshotPath());
  program_.Files.DeleteFileIfAny(NView.JpegPath());
  viewer_.Pic->ClearDrawings();
  SaveSnapshot();
  const PictureState& state = viewer_.State;
  const auto [left, right] = std::minmax(state.CropX0, state.CropX1);
  const auto [top, bottom] = std::minmax(state.CropY0, state.CropY1);
  // The column and the row of the larger position aren't part of the result.
  const QRect part(int(RoundEven(left)), int(RoundEven(top)), int(RoundEven(right - left)),
                   int(RoundEven(bottom - top)));
  Surface &pic = *viewer_.Pic, &scratch = *viewer_.PicX;
  scratch.SetAutoSize(true);
  scratch.ClearPicture();
  scratch.resize(part.size());
  scratch.PaintPicture(pic.Picture(), QRect(QPoint(0, 0), part.size()), part);
  TakeScratch();
}

// The result comes before the snapshot, which is gone once it is written over.
bool ModPics::ResizePicture(qint16 Percent) {
  const WaitCursor wait;
  Surface &pic = *viewer_.Pic, &scratch = *viewer_.PicX;
  scratch.SetAutoSize(true);
  scratch.ClearPicture();
  const auto W = float(pic.width() * (Percent / 100.0)), H = float(pic.height() * (Percent / 100.0));
  const QSize size(int(RoundEven(W)), int(RoundEven(H)));
  if (!size.isEmpty() && !IsHoldableSize(size)) return false;
  scratch.move(0, 0);
  scratch.resize(size);
  if (!scratch.PaintPicture(pic.Picture(), QRect(QPoint(0, 0), size), pic.Picture().rect())) return false;
  program_.Files.DeleteFileIfAny(NView.SnapshotPath());
  SaveSnapshot();
  pic.move(0, 0);
  TakeScratch();
  return true;
}

// The scratch surface keeps nothing of it: a large picture needn't lie in memory twice.
void ModPics::TakeScratch() {
  Surface &pic = *viewer_.Pic, &scratch = *viewer_.PicX;
  const QSize size = scratch.size();
  pic.SetAutoSize(true);
  pic.ClearPicture();
  pic.resize(size);
  pic.TakeImageOf(scratch);
  scratch.ClearPicture();
  SizeViewer(size.width(), size.height(), EditorHeight(), QString());
  ShowSize(size.width(), size.height());
  emit viewer_.Notices.tJSz(QString());
}

void ModPics::UndoPicture() {
  if (!viewer_.isVisible()) return;
  Surface& pic = *viewer_.Pic;
  pic.SetAutoSize(true);
  if (!LoadSnapshot()) {
    program_.platform.dialogs.ShowMessage(&viewer_, StringText(FixedText::OneLevelOfUndo));
    return;
  }
  program_.Files.DeleteFileIfAny(NView.JpegPath());
  program_.Files.DeleteFileIfAny(NView.SnapshotPath());
  ShowSize(pic.width(), pic.height());
  emit viewer_.Notices.tJSz(QString());
  SizeViewer(pic.width(), pic.height(), EditorHeight(), QString());
}

// One that can't be read leaves the picture as it is.
bool ModPics::LoadSnapshot() {
  const WaitCursor wait;
  return program_.Files.FileExists(NView.SnapshotPath()) && viewer_.Pic->LoadPicture(NView.SnapshotPath());
}

void ModPics::DeleteScratchFiles() {
  program_.Files.DeleteFileIfAny(NView.JpegPath());
  program_.Files.DeleteFileIfAny(NView.SnapshotPath());
}

void ModPics::DeleteFilesAtClose() {
  for (const char* name : {"qktemp.bmp", "qktemp.jpg"})
    program_.Files.DeleteFileIfAny(PathRules::Join(program_.AppPath, QLatin1String(name)));
}
