#include "ModNView.h"

#include <QFileInfo>
#include <algorithm>

#include "JpegFile.h"
#include "MessagePass.h"
#include "PathRules.h"
#include "Program.h"
#include "ReadPicture.h"
#include "ScratchFile.h"
#include "WaitCursor.h"
#include "WriteWhole.h"

namespace {

constexpr int kQualityOfSaving = 100;

bool CopyInto(const QString& path, QIODevice& target) {
  QFile source(path);
  if (!source.open(QIODevice::ReadOnly)) return false;
  QByteArray block(1 << 20, Qt::Uninitialized);
  for (;;) {
    const qint64 got = source.read(block.data(), block.size());
    if (got <= 0) return got == 0;
    if (target.write(block.constData(), got) != got) return false;
  }
}

}  // namespace

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
  WriteWhole(JpgPath, [&](QIODevice& file) { return WriteJpeg(image, Quality, file); });
}

// The picture goes only where there is another one in its place.
bool ModNView::CompressPicture(qint16 Quality) {
  const WaitCursor wait;
  const QString snapshot = SnapshotPath(), jpeg = JpegPath();
  program_.Files.DeleteFileIfAny(snapshot);
  program_.Files.DeleteFileIfAny(jpeg);
  if (!viewer_.Pic->SaveImage(snapshot)) return false;
  RunMessagePass();
  if (program_.Files.FileExists(snapshot)) {
    MakeJpeg(snapshot, jpeg, Quality);
    if (!viewer_.Pic->LoadPicture(jpeg)) return false;
  }
  RunMessagePass();
  if (program_.Files.FileExists(jpeg)) emit viewer_.Notices.tJSz(QString::number(FileSizeKb(jpeg)));
  return true;
}

// The old file is as good as deleted from the beginning: the new one is made beside it and never over it. But it goes
// only in the moment in which the new one takes its place.
bool ModNView::SavePictureAsJpeg(const QString& Path) {
  const WaitCursor wait;
  const QString snapshot = SnapshotPath(), jpeg = JpegPath();
  const bool copies =
      viewer_.State.JpegCurrent && program_.Files.FileExists(jpeg) && QFileInfo(Path) != QFileInfo(jpeg);
  viewer_.State.JpegCurrent = false;
  program_.Files.DeleteFileIfAny(snapshot);
  ScratchFile made(QFileInfo(Path).path());
  if (!made.open()) return false;
  if (copies) {
    if (!CopyInto(jpeg, made)) return false;
  } else {
    viewer_.Pic->SaveImage(snapshot);
    RunMessagePass();
    if (!program_.Files.FileExists(snapshot) || !WriteJpeg(ReadPicture(snapshot), kQualityOfSaving, made)) return false;
    RunMessagePass();
  }
  if (program_.Files.FileExists(Path)) program_.Files.Attributes().Clear(Path);
  if (!made.MoveTo(Path)) return false;
  if (!copies) emit viewer_.Notices.tJSz(QString::number(FileSizeKb(Path)));
  return true;
}
