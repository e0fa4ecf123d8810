#include "SpecialFolder.h"

#include "Platform.h"

QString GetSpecialFolder(const Platform& platform, int FolderId) {
  return FolderId == 0 ? platform.folders.Desktop() : QString();
}
