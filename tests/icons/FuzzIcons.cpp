#include <QCoreApplication>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "Breaker.h"
#include "IconBytes.h"
#include "IconReader.h"
#include "PictureFiles.h"

// Broken icons under the sanitizers: fuzz_icons [ITERATIONS [SEED]]. Without a number of iterations it runs for about
// eight seconds. Whatever is done to a file, the picture has at most the size of an icon, a mask has that size exactly
// and is black and white, and both are there soon.
namespace {

constexpr auto kDuration = std::chrono::seconds(8);
constexpr auto kLongest = std::chrono::seconds(5);
constexpr unsigned kSeed = 11;
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
  const QCoreApplication application(argc, argv);
  // The decoders complain of each broken file.
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  const long iterations = argc > 1 ? std::atol(argv[1]) : 0;
  const unsigned seed = argc > 2 ? unsigned(std::atol(argv[2])) : kSeed;
  const QList<PictureSample> samples = Samples();
  for (const PictureSample& sample : samples) {
    if (!PictureForIcon(sample.bytes).isNull()) continue;
    std::fprintf(stderr, "%s isn't read even unbroken\n", sample.name);
    return 1;
  }
  const auto end = std::chrono::steady_clock::now() + kDuration;
  long done = 0, pictures = 0, masks = 0;
  for (; iterations > 0 ? done < iterations : std::chrono::steady_clock::now() < end; ++done) {
    Breaker breaker(seed * 1000003u + unsigned(done));
    const PictureSample& sample = samples[breaker.Below(std::size_t(samples.size()))];
    QByteArray bytes = sample.bytes;
    breaker.Break(bytes, samples[breaker.Below(std::size_t(samples.size()))].bytes);
    const auto start = std::chrono::steady_clock::now();
    const QImage picture = PictureForIcon(bytes);
    const auto mask = MaskOfIcon(bytes);
    const bool late = std::chrono::steady_clock::now() - start > kLongest;
    if (!picture.isNull()) ++pictures;
    if (mask) ++masks;
    if (late || picture.width() > kSide || picture.height() > kSide || (mask && !IsGoodMask(*mask))) {
      std::fprintf(stderr, "iteration %ld, %s: %s\n", done, sample.name, late ? "takes too long" : "out of bounds");
      return 1;
    }
  }
  std::printf("%ld broken files, %ld of them still a picture, %ld with a mask\n", done, pictures, masks);
  // Neither all refused nor all taken, or the breaking is no good.
  return pictures > 0 && pictures < done && masks > 0 && masks < done ? 0 : 1;
}
