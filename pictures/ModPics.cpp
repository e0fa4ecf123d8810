#include "ModPics.h"

#include <QApplication>
#include <QScreen>
#include <algorithm>

#include "MessagePass.h"
#include "Numbers.h"
#include "PathRules.h"
#include "Program.h"
#include "ReadPicture.h"
#include "StringTable.h"
#include "Twips.h"
#include "WindowOrder.h"

namespace {

constexpr double kTopOfCutWindow = 400;  // twips

QSize PrimaryScreenSize() {
  const QScreen* const screen = QGuiApplication::primaryScreen();
  return screen ? screen->geometry().size() : QSize();
}

}  // namespace

ModPics::ModPics(Program& program, fBitmap& viewer)
    : NView(program, viewer), ScreenSize(PrimaryScreenSize), program_(program), viewer_(&viewer) {}

bool ModPics::SizeViewer(qint32 W, qint32 H, double Reserved, const QString& Title) {
  if (!viewer_) return false;
  const QSize screen = ScreenSize();
  const double screenWidth = PixelsToTwips(screen.width());
  const double maxH = PixelsToTwips(screen.height()) - Reserved;
  if (!Title.isEmpty()) viewer_->setWindowTitle(Title);
  const QSize border = viewer_->Border();
  double width = (double(W) + border.width()) * kTwipsPerPixel;
  double height = (double(H) + border.height()) * kTwipsPerPixel;
  bool cropped = false;
  if (height > maxH) {
    height = maxH;
    cropped = true;
    viewer_->setWindowTitle(StringText(FixedText::ImageCropped));
  }
  // A cut in width has the same caption and doesn't count as cropped.
  if (0.9 * screenWidth < width) {
    width = 0.9 * screenWidth;
    viewer_->setWindowTitle(StringText(FixedText::ImageCropped));
  }
  const double left = (screenWidth - width) / 2;
  const double top = cropped ? kTopOfCutWindow : (maxH - height) / 2;
  viewer_->resize(std::max(TwipsToPixels(width) - border.width(), 0),
                  std::max(TwipsToPixels(height) - border.height(), 0));
  viewer_->move(TwipsToPixels(left), TwipsToPixels(top));
  viewer_->Pic->move(0, 0);
  viewer_->PicX->move(0, 0);
  return cropped;
}

bool ModPics::LoadIntoPic(const QString& path) {
  Surface& pic = *viewer_->Pic;
  pic.ClearPicture();
  pic.SetAutoSize(true);
  pic.show();
  return pic.LoadPicture(path);
}

void ModPics::SayLoadingFailed() {
  QWidget* const owner = viewer_->isVisible() ? viewer_.data() : QApplication::activeWindow();
  program_.platform.dialogs.ShowMessage(owner, StringText(FixedText::ErrorLoadingImage));
}

bool ModPics::OpenPictureFile(const QString& Path) {
  if (!viewer_) return false;
  viewer_->PicX->ClearPicture();
  viewer_->PicX->SetAutoSize(true);
  viewer_->PicX->hide();
  // The surface could show a PNG, but the editor opens none.
  const bool isPng = FormatOfFile(Path) == PictureFormat::Png;
  if (!LoadIntoPic(isPng ? QString() : Path)) {
    SayLoadingFailed();
    return false;
  }
  const QSize size = viewer_->Pic->size();
  ShowSize(size.width(), size.height());
  // The size of the last JPEG stays on show.
  emit viewer_->Notices.tSz(QString::number(FileSizeKb(Path)));
  SizeViewer(size.width(), size.height(), EditorHeight(), Path);
  emit viewer_->Notices.HideToolsRequested();
  viewer_->show();
  SetTopmost(viewer_);
  return true;
}

std::optional<PictureSpec> ModPics::LoadPictureFile(const QString& Path, int Reserved) {
  if (!viewer_) return std::nullopt;
  if (!LoadIntoPic(Path)) {
    viewer_->hide();
    SayLoadingFailed();
    return std::nullopt;
  }
  const QSize size = viewer_->Pic->size();
  SizeViewer(size.width(), size.height(), Reserved, Path);
  viewer_->show();
  return PictureSpec{size.width(), size.height(), FileSizeKb(Path)};
}

void ModPics::HideViewer() {
  if (viewer_) viewer_->hide();
}

void ModPics::ShowSize(int width, int height) {
  emit viewer_->Notices.tWd(QString::number(width));
  emit viewer_->Notices.tHt(QString::number(height));
}

// With whatever is drawn on the picture: a crop rectangle that is on show goes into the snapshot.
void ModPics::SaveSnapshot() {
  viewer_->Pic->SaveImage(NView.SnapshotPath());
  RunMessagePass();
}

void ModPics::CropPicture() {
  if (!viewer_) return;
  program_.Files.DeleteFileIfAny(NView.SnapshotPath());
  program_.Files.DeleteFileIfAny(NView.JpegPath());
  viewer_->Pic->ClearDrawings();
  SaveSnapshot();
  if (!viewer_) return;
  const PictureState& state = viewer_->State;
  const auto [left, right] = std::minmax(state.CropX0, state.CropX1);
  const auto [top, bottom] = std::minmax(state.CropY0, state.CropY1);
  // The column and the row of the larger position aren't part of the result.
  const QRect part(int(RoundEven(left)), int(RoundEven(top)), int(RoundEven(right - left)),
                   int(RoundEven(bottom - top)));
  Surface &pic = *viewer_->Pic, &scratch = *viewer_->PicX;
  scratch.SetAutoSize(true);
  scratch.ClearPicture();
  scratch.resize(part.size());
  scratch.PaintPicture(pic.Picture(), QRect(QPoint(0, 0), part.size()), part);
  pic.SetAutoSize(true);
  pic.ClearPicture();
  pic.resize(part.size());
  pic.TakeImageOf(scratch);
  SizeViewer(part.width(), part.height(), EditorHeight(), QString());
  ShowSize(part.width(), part.height());
  emit viewer_->Notices.tJSz(QString());
}

void ModPics::ResizePicture(qint16 Percent) {
  if (!viewer_) return;
  program_.Files.DeleteFileIfAny(NView.SnapshotPath());
  SaveSnapshot();
  if (!viewer_) return;
  Surface &pic = *viewer_->Pic, &scratch = *viewer_->PicX;
  scratch.SetAutoSize(true);
  scratch.ClearPicture();
  const auto W = float(pic.width() * (Percent / 100.0)), H = float(pic.height() * (Percent / 100.0));
  const QSize size(int(RoundEven(W)), int(RoundEven(H)));
  if (!size.isEmpty() && !IsHoldableSize(size)) return;
  scratch.move(0, 0);
  scratch.resize(size);
  scratch.PaintPicture(pic.Picture(), QRect(QPoint(0, 0), size), pic.Picture().rect());
  pic.SetAutoSize(true);
  pic.ClearPicture();
  pic.move(0, 0);
  pic.resize(size);
  pic.TakeImageOf(scratch);
  SizeViewer(size.width(), size.height(), EditorHeight(), QString());
  ShowSize(size.width(), size.height());
  emit viewer_->Notices.tJSz(QString());
}

void ModPics::UndoPicture() {
  if (!viewer_ || !viewer_->isVisible()) return;
  if (!program_.Files.FileExists(NView.SnapshotPath())) {
    program_.platform.dialogs.ShowMessage(viewer_, StringText(FixedText::OneLevelOfUndo));
    return;
  }
  Surface& pic = *viewer_->Pic;
  pic.ClearPicture();
  pic.SetAutoSize(true);
  pic.LoadPicture(NView.SnapshotPath());
  program_.Files.DeleteFileIfAny(NView.JpegPath());
  program_.Files.DeleteFileIfAny(NView.SnapshotPath());
  ShowSize(pic.width(), pic.height());
  emit viewer_->Notices.tJSz(QString());
  SizeViewer(pic.width(), pic.height(), EditorHeight(), QString());
}

void ModPics::DeleteScratchFiles() {
  program_.Files.DeleteFileIfAny(NView.JpegPath());
  program_.Files.DeleteFileIfAny(NView.SnapshotPath());
}

void ModPics::DeleteFilesAtClose() {
  for (const char* name : {"qktemp.bmp", "qktemp.jpg"})
    program_.Files.DeleteFileIfAny(PathRules::Join(program_.AppPath, QLatin1String(name)));
}
