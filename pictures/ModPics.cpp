#include "ModPics.h"

#include <QImageReader>
#include <algorithm>

#include "Program.h"
#include "StringTable.h"
#include "fBitmap.h"

std::optional<PictureSpec> ModPics::LoadPictureFile(const QString& Path, int) {
  QImageReader reader(Path);
  reader.setDecideFormatFromContent(true);
  const QImage picture = reader.read();
  if (picture.isNull()) {
    HideViewer();
    program_.platform.dialogs.ShowMessage(&viewer_, StringText(FixedText::ErrorLoadingImage), MessageIcon::Information);
    return std::nullopt;
  }
  viewer_.setWindowTitle(Path);
  viewer_.show();
  return PictureSpec{picture.width(), picture.height(), std::max(1, program_.Files.FileSize(Path) / 1024)};
}

void ModPics::HideViewer() {
  viewer_.hide();
}
