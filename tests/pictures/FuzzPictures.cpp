#include "FuzzFiles.h"
#include "PictureBounds.h"
#include "ReadPicture.h"

// Broken picture files under the sanitizers. Whatever is done to a file, it gives no picture or one within the bounds.
int main(int argc, char** argv) {
  return FuzzFiles(argc, argv, PictureSamples(), {"bmp", "gif", "ico", "jpg"}, [](const QByteArray& bytes) {
    const QImage image = PictureFromBytes(bytes);
    if (image.isNull()) return Fuzzed::Refused;
    return IsHoldableSize(image.size()) ? Fuzzed::Read : Fuzzed::OutOfBounds;
  });
}
