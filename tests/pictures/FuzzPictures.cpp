#include <QCoreApplication>
#include <QLoggingCategory>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "Breaker.h"
#include "PictureFiles.h"
#include "ReadPicture.h"

// Broken picture files under the sanitizers: FuzzPictures [ITERATIONS [SEED]]. Without a number of iterations it runs
// for about eight seconds. Whatever is done to a file, it gives no picture or one within the bounds, and soon.
namespace {

constexpr auto kDuration = std::chrono::seconds(8);
constexpr auto kLongest = std::chrono::seconds(5);
constexpr unsigned kSeed = 7;

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  // The decoders complain of each broken file.
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  const long iterations = argc > 1 ? std::atol(argv[1]) : 0;
  const unsigned seed = argc > 2 ? unsigned(std::atol(argv[2])) : kSeed;
  const QList<PictureSample> samples = PictureSamples();
  for (const PictureSample& sample : samples) {
    if (!PictureFromBytes(sample.bytes).isNull()) continue;
    std::fprintf(stderr, "%s isn't read even unbroken\n", sample.name);
    return 1;
  }
  const auto end = std::chrono::steady_clock::now() + kDuration;
  long done = 0, read = 0;
  for (; iterations > 0 ? done < iterations : std::chrono::steady_clock::now() < end; ++done) {
    Breaker breaker(seed * 1000003u + unsigned(done));
    const PictureSample& sample = samples[breaker.Below(std::size_t(samples.size()))];
    QByteArray bytes = sample.bytes;
    breaker.Break(bytes, samples[breaker.Below(std::size_t(samples.size()))].bytes);
    const auto start = std::chrono::steady_clock::now();
    const QImage image = PictureFromBytes(bytes);
    if (!image.isNull()) ++read;
    const bool late = std::chrono::steady_clock::now() - start > kLongest;
    if (late || (!image.isNull() && !IsHoldableSize(image.size()))) {
      std::fprintf(stderr, "iteration %ld, %s: %s\n", done, sample.name, late ? "takes too long" : "out of bounds");
      return 1;
    }
  }
  std::printf("%ld broken files, %ld of them still a picture\n", done, read);
  // Neither all refused nor all taken, or the breaking is no good.
  return read > 0 && read < done ? 0 : 1;
}
