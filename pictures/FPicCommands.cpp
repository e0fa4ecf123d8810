// What the buttons of the picture editor's window do.
#include <QDragEnterEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>

#include "BusyGuard.h"
#include "DroppedFile.h"
#include "FPic.h"
#include "ModBrowse.h"
#include "ModPics.h"
#include "Numbers.h"
#include "OpenHelp.h"
#include "Program.h"
#include "StringTable.h"
#include "WindowOrder.h"

namespace {

// A number beyond 16 bits, at which a command ends without a word.
bool IsBeyond(const QString& text) {
  return IsNumeric(text) && !ToInteger16(text);
}

// 10 is let through although the message says greater than 10, and there is no upper end.
bool IsPercentage(qint16 number) {
  return number >= 10 && number != 100;
}
bool IsQuality(qint16 number) {
  return number >= 5 && number <= 100;
}

}  // namespace

void FPic::ConnectButtons() {
  connect(bGetPic, &QPushButton::clicked, this, &FPic::OnGetPic);
  connect(bSaveJPG, &QPushButton::clicked, this, &FPic::OnSaveJPG);
  connect(bClosePicEdit, &QPushButton::clicked, this, [this] { ClosePicture(true); });
  connect(bCloseIm, &QPushButton::clicked, this, &FPic::OnCloseIm);
  connect(bResize, &QPushButton::clicked, this, &FPic::OnResize);
  connect(bCompress, &QPushButton::clicked, this, &FPic::OnCompress);
  connect(bCrop, &QPushButton::clicked, this, &FPic::OnCrop);
  connect(bUnDo, &QPushButton::clicked, this, &FPic::OnUnDo);
  connect(bQPicEdit, &QPushButton::clicked, this, [this] { OpenHelp(program_, BoxOwner()); });
}

void FPic::Open() {
  pics_->DeleteScratchFiles();
  viewer_->State.JpegCurrent = false;
  winId();
  // Tied to this window the picture doesn't get lost behind it, not even outside of the top layer.
  viewer_->TieTo(this);
  viewer_->setAcceptDrops(true);
  FitFrame(screen()->availableGeometry().width());
  ShowInFront(*this);
}

bool FPic::IsViewerVisible() const {
  return viewer_->isVisible();
}

void FPic::ClosePicture(bool CloseEditor) {
  closedMeanwhile_ = true;
  if (IsViewerVisible()) {
    SetNotTopmost(viewer_);
    viewer_->hide();
  }
  if (!CloseEditor) return;
  hide();
  viewer_->TieTo(nullptr);
  viewer_->setAcceptDrops(false);
  pics_->DeleteFilesAtClose();
}

// A box that were this window's could stand behind the viewer.
QWidget* FPic::BoxOwner() {
  return IsViewerVisible() ? static_cast<QWidget*>(viewer_) : this;
}

void FPic::Tell(int message) {
  program_.platform.dialogs.ShowMessage(BoxOwner(), StringText(message));
  TakeKeysBack();
}

// A box hands the keys on to its owner.
void FPic::TakeKeysBack() {
  if (isVisible()) activateWindow();
}

bool FPic::HasPicture() {
  if (IsViewerVisible()) return true;
  Tell(TextNumber::NoPictureOpen);
  return false;
}

// After Cancel the viewer stays out of the top layer, and that is meant.
void FPic::OnGetPic() {
  const BusyGuard guard(Busy);
  if (!guard) return;
  if (IsViewerVisible()) SetNotTopmost(viewer_);
  const QString name = ShowOpenDialog(program_, this, QStringLiteral("Select Picture"),
                                      QStringLiteral("Picture Files(*.bmp;*.jpg;*.gif;*.ico)"),
                                      QStringLiteral("*.bmp;*.jpg;*.gif;*.ico"));
  if (name.isEmpty()) return;
  OpenFile(name);
}

// As if the file had been chosen in the dialog.
void FPic::OnDrop(const QString& path) {
  const BusyGuard guard(Busy);
  if (!guard || !isVisible()) return;
  OpenFile(path);
}

void FPic::OpenFile(const QString& name) {
  if (program_.Files.FileExists(name)) {
    // The tool panel may have had the viewer meanwhile.
    viewer_->TieTo(this);
    // Another picture is on show now than the last JPEG.
    if (pics_->OpenPictureFile(name)) viewer_->State.JpegCurrent = false;
  }
  TakeKeysBack();
  viewer_->State.CropDefined = viewer_->State.CropDragging = false;
}

void FPic::OnSaveJPG() {
  const BusyGuard guard(Busy);
  if (!guard || !HasPicture()) return;
  SetNotTopmost(viewer_);
  viewer_->hide();
  closedMeanwhile_ = false;
  const QString name =
      ShowSaveDialog(program_, this, QStringLiteral("Save AS JPG File"), QStringLiteral("JPG Files(*.jpg)"),
                     QStringLiteral("*.jpg"), QStringLiteral("jpg"));
  if (!name.isEmpty() && MayWrite(name)) {
    if (!pics_->NView.SavePictureAsJpeg(name)) Tell(TextNumber::SavingFailed);
    viewer_->State.JpegCurrent = false;
  }
  if (closedMeanwhile_) return;
  viewer_->show();
  SetTopmost(viewer_);
}

// Asks about a file that is there already; it goes when the new one is whole.
bool FPic::MayWrite(const QString& path) {
  if (!program_.Files.FileExists(path)) return true;
  const MessageAnswer answer = program_.platform.dialogs.ShowMessage(
      this, StringText(TextNumber::ReplaceFile), MessageIcon::Information, MessageButtons::OkCancel);
  return answer == MessageAnswer::Ok;
}

void FPic::OnCrop() {
  const BusyGuard guard(Busy);
  if (!guard || !HasPicture()) return;
  if (!viewer_->State.CropDefined) {
    Tell(TextNumber::NoCropArea);
    return;
  }
  pics_->CropPicture();
  emit viewer_->Notices.LabCropSize(QString());
  viewer_->State.CropDefined = false;
  viewer_->State.JpegCurrent = false;
}

// The crop area stays as it is, though its band has gone from view; so it does at Undo. A percentage for whose result
// there is no memory is as bad as any other.
void FPic::OnResize() {
  const BusyGuard guard(Busy);
  if (!guard || !HasPicture()) return;
  const QString text = tPercSize->text();
  if (IsBeyond(text)) return;
  const std::optional<qint16> N = ToInteger16(text);
  if (!N || !IsPercentage(*N)) {
    Tell(TextNumber::BadPercentage);
    return;
  }
  if (!pics_->ResizePicture(*N)) {
    Tell(TextNumber::BadPercentage);
    return;
  }
  viewer_->State.JpegCurrent = false;
}

// The flag is set whatever the compress did.
void FPic::OnCompress() {
  const BusyGuard guard(Busy);
  if (!guard || !HasPicture()) return;
  const QString text = tPercComp->text();
  if (IsBeyond(text)) return;
  const std::optional<qint16> Q = ToInteger16(text);
  if (!Q || !IsQuality(*Q)) {
    Tell(TextNumber::BadQuality);
    return;
  }
  pics_->NView.CompressPicture(*Q);
  viewer_->State.JpegCurrent = true;
}

void FPic::OnUnDo() {
  const BusyGuard guard(Busy);
  if (!guard) return;
  pics_->UndoPicture();
  TakeKeysBack();
  viewer_->State.JpegCurrent = false;
}

void FPic::OnCloseIm() {
  ClosePicture(false);
  for (QLineEdit* box : {tWd, tHt, tJSz, tSz}) box->clear();
}

void FPic::dragEnterEvent(QDragEnterEvent* event) {
  if (!DroppedFile(*event).isEmpty()) AcceptCopy(*event);
}

void FPic::dropEvent(QDropEvent* event) {
  AcceptCopy(*event);
  emit viewer_->Notices.FileDropped(DroppedFile(*event));
}
