#include "FuzzFiles.h"
#include "IconBytes.h"
#include "IconReader.h"

// Broken icons under the sanitizers. Whatever is done to a file, the picture has at most the size of an icon, and a
// mask has that size exactly and is black and white.
namespace {

constexpr int kSide = 32;

QList<PictureSample> Samples() {
  QImage two = HalfRed(32);
  two.setPixel(31, 31, qRgb(255, 0, 0));
  QByteArray asPng = IconFileOf({BitmapImage(HalfRed(32), 4)}).left(22);
  const QByteArray png = EncodedPicture(HalfRed(32), "png");
  PutLittle(asPng, 14, quint32(png.size()), 4);
  QList<PictureSample> samples = {
      {"icon of 2 colours", IconFileOf({BitmapImage(two, 1)})},
      {"icon of 16 colours", IconFileOf({BitmapImage(HalfRed(32), 4)})},
      {"icon of 256 colours", IconFileOf({BitmapImage(HalfRed(48), 8)})},
      {"icon of 24 bits", IconFileOf({BitmapImage(HalfRed(16), 24)})},
      {"icon of 32 bits", IconFileOf({BitmapImage(HalfRed(32), 32)})},
      {"several images",
       IconFileOf({BitmapImage(HalfRed(16), 4), BitmapImage(HalfRed(48), 8), BitmapImage(HalfRed(32), 24)})},
      {"icon of 32 bits with an empty mask",
       IconFileOf({BitmapImage(HalfRed(32), 32)}).chopped(128) + QByteArray(128, '\0')},
      {"icon as png", asPng + png}};
  for (const PictureSample& sample : PictureSamples())
    if (QByteArray(sample.name) == "bmp" || QByteArray(sample.name) == "gif") samples << sample;
  return samples;
}

bool IsGoodMask(const QImage& mask) {
  if (mask.size() != QSize(kSide, kSide)) return false;
  for (int y = 0; y < kSide; ++y)
    for (int x = 0; x < kSide; ++x)
      if ((mask.pixel(x, y) & 0xFFFFFF) != 0 && (mask.pixel(x, y) & 0xFFFFFF) != 0xFFFFFF) return false;
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  long done = 0, masks = 0;
  const int result = FuzzFiles(argc, argv, Samples(), {"bmp", "gif", "ico", "jpg"}, [&](const QByteArray& bytes) {
    const QImage picture = PictureForIcon(bytes);
    const auto mask = MaskOfIcon(bytes);
    ++done;
    if (mask) ++masks;
    if (picture.width() > kSide || picture.height() > kSide || (mask && !IsGoodMask(*mask))) return Fuzzed::OutOfBounds;
    return picture.isNull() ? Fuzzed::Refused : Fuzzed::Read;
  });
  std::printf("%ld of %ld with a mask\n", masks, done);
  return result != 0 || masks == 0 || masks == done ? 1 : 0;
}
