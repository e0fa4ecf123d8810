// What the buttons of the picture editor's window do.
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QWindow>

#include "BusyGuard.h"
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
  if (viewer_) viewer_->State.JpegCurrent = false;
  winId();
  TieViewer(windowHandle());
  FitFrame(screen()->availableGeometry().width());
  ShowInFront(*this);
}

// Tied to this window the picture doesn't get lost behind it, not even outside of the top layer.
void FPic::TieViewer(QWindow* window) {
  if (!viewer_) return;
  viewer_->winId();
  viewer_->windowHandle()->setTransientParent(window);
}

void FPic::ClosePicture(bool CloseEditor) {
  if (IsViewerVisible()) {
    SetNotTopmost(viewer_);
    viewer_->hide();
  }
  if (!CloseEditor) return;
  hide();
  TieViewer(nullptr);
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

// The last JPEG still counts as the picture on show when another one has been opened. After Cancel the viewer stays out
// of the top layer. Both are meant.
void FPic::OnGetPic() {
  const BusyGuard guard(Busy);
  if (!guard) return;
  if (IsViewerVisible()) SetNotTopmost(viewer_);
  const QString name = ShowOpenDialog(program_, this, QStringLiteral("Select Picture"),
                                      QStringLiteral("Picture Files(*.bmp;*.jpg;*.gif;*.ico)"),
                                      QStringLiteral("*.bmp;*.jpg;*.gif;*.ico"));
  if (name.isEmpty()) return;
  if (program_.Files.FileExists(name)) pics_->OpenPictureFile(name);
  TakeKeysBack();
  viewer_->State.CropDefined = viewer_->State.CropDragging = false;
}

void FPic::OnSaveJPG() {
  const BusyGuard guard(Busy);
  if (!guard || !HasPicture()) return;
  SetNotTopmost(viewer_);
  viewer_->hide();
  const QString name =
      ShowSaveDialog(program_, this, QStringLiteral("Save AS JPG File"), QStringLiteral("JPG Files(*.jpg)"),
                     QStringLiteral("*.jpg"), QStringLiteral("jpg"));
  if (!name.isEmpty() && MayWrite(name)) {
    if (!pics_->NView.SavePictureAsJpeg(name)) Tell(TextNumber::SavingFailed);
    viewer_->State.JpegCurrent = false;
  }
  viewer_->show();
  SetTopmost(viewer_);
}

// Asks about a file that is there already, and deletes it.
bool FPic::MayWrite(const QString& path) {
  if (!program_.Files.FileExists(path)) return true;
  const MessageAnswer answer = program_.platform.dialogs.ShowMessage(
      this, StringText(TextNumber::ReplaceFile), MessageIcon::Information, MessageButtons::OkCancel);
  if (answer != MessageAnswer::Ok) return false;
  program_.Files.DeleteFileIfAny(path);
  return true;
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

// The crop area stays as it is, though its band has gone from view; so it does at Undo.
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
  pics_->ResizePicture(*N);
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
  if (viewer_) viewer_->State.JpegCurrent = false;
}

void FPic::OnCloseIm() {
  ClosePicture(false);
  for (QLineEdit* box : {tWd, tHt, tJSz, tSz}) box->clear();
}
