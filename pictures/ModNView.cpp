#include "ModNView.h"

#include <QFileInfo>
#include <QImageWriter>
#include <algorithm>

#include "MessagePass.h"
#include "PathRules.h"
#include "Program.h"
#include "ReadPicture.h"

int FileSizeKb(const QString& path) {
  return int(std::max<qint64>(QFileInfo(path).size() / 1024, 1));
}

QString ModNView::SnapshotPath() const {
  return PathRules::Join(program_.AppPath, QStringLiteral("cvtemp.bmp"));
}
QString ModNView::JpegPath() const {
  return PathRules::Join(program_.AppPath, QStringLiteral("cvtemp.jpg"));
}

void ModNView::MakeJpeg(const QString& BmpPath, const QString& JpgPath, qint16 Quality) {
  const QImage image = ReadPicture(BmpPath);
  if (image.isNull()) return;
  QImageWriter writer(JpgPath, "jpg");
  writer.setQuality(Quality);
  writer.write(image);
}

bool ModNView::CompressPicture(qint16 Quality) {
  if (!viewer_) return false;
  const QString snapshot = SnapshotPath(), jpeg = JpegPath();
  program_.Files.DeleteFileIfAny(snapshot);
  program_.Files.DeleteFileIfAny(jpeg);
  if (!viewer_->Pic->SaveImage(snapshot)) return false;
  RunMessagePass();
  if (!viewer_) return false;
  if (program_.Files.FileExists(snapshot)) {
    MakeJpeg(snapshot, jpeg, Quality);
    viewer_->Pic->ClearPicture();
    if (!viewer_->Pic->LoadPicture(jpeg)) return false;
  }
  RunMessagePass();
  if (!viewer_) return false;
  if (program_.Files.FileExists(jpeg)) emit viewer_->Notices.tJSz(QString::number(FileSizeKb(jpeg)));
  return true;
}

bool ModNView::SavePictureAsJpeg(const QString& Path) {
  if (!viewer_) return false;
  const QString snapshot = SnapshotPath(), jpeg = JpegPath();
  program_.Files.DeleteFileIfAny(Path);
  program_.Files.DeleteFileIfAny(snapshot);
  if (program_.Files.FileExists(jpeg) && viewer_->State.JpegCurrent) {
    program_.Files.CopyFileOver(jpeg, Path);
    viewer_->State.JpegCurrent = false;
    return true;
  }
  viewer_->Pic->SaveImage(snapshot);
  RunMessagePass();
  if (program_.Files.FileExists(snapshot)) MakeJpeg(snapshot, Path, 100);
  RunMessagePass();
  if (!viewer_) return false;
  viewer_->State.JpegCurrent = false;
  if (!program_.Files.FileExists(Path)) return false;
  emit viewer_->Notices.tJSz(QString::number(FileSizeKb(Path)));
  return true;
}
