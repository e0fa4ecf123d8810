// The run of a fuzz program over files of pictures, as a command: PROGRAM [ITERATIONS [SEED]]. Without a number of
// iterations it goes on for about eight seconds, and without a seed it takes a fresh one.
#pragma once

#include <QCoreApplication>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "Breaker.h"
#include "OwnTime.h"
#include "PictureFiles.h"
#include "PublicSeeds.h"
#include "RandomSeed.h"

// What came of one file.
enum class Fuzzed { Refused, Read, OutOfBounds };

// Gives each sample to `read` as it is, then broken over and over, as are those of the public collection; the result is
// that of the program. Something is wrong when an unbroken one of a kind in `kinds` isn't read, one is out of bounds or
// takes long, or none or all of the broken ones are refused.
template <typename Read>
int FuzzFiles(int argc, char** argv, QList<PictureSample> samples, const QStringList& kinds, Read read) {
  constexpr auto kDuration = std::chrono::seconds(8);
  constexpr double kLongestSeconds = 5;
  const QCoreApplication application(argc, argv);
  // The decoders complain of each broken file.
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  const long iterations = argc > 1 ? std::atol(argv[1]) : 0;
  const unsigned seed = argc > 2 ? unsigned(std::atol(argv[2])) : RandomSeed("broken pictures");
  const QList<PublicSeed> seeds = PublicSeeds();
  std::printf("%d files of the public collection\n", int(seeds.size()));
  if (seeds.isEmpty() && qEnvironmentVariable("CI") == QLatin1String("true")) {
    std::fprintf(stderr, "the public collection isn't there\n");
    return 1;
  }
  QList<PictureSample> wanted = samples;
  for (const PublicSeed& seed : seeds) {
    const PictureSample sample{seed.name.constData(), seed.bytes};
    if (kinds.contains(seed.kind)) wanted += sample;
    samples += sample;
  }
  for (const PictureSample& sample : wanted) {
    if (read(sample.bytes) == Fuzzed::Read) continue;
    std::fprintf(stderr, "%s isn't read even unbroken\n", sample.name);
    return 1;
  }
  for (const PictureSample& sample : samples) {
    if (read(sample.bytes) != Fuzzed::OutOfBounds) continue;
    std::fprintf(stderr, "%s is out of bounds\n", sample.name);
    return 1;
  }
  const auto end = std::chrono::steady_clock::now() + kDuration;
  long done = 0, pictures = 0;
  for (; iterations > 0 ? done < iterations : std::chrono::steady_clock::now() < end; ++done) {
    Breaker breaker(seed * 1000003u + unsigned(done));
    const PictureSample& sample = samples[breaker.Below(std::size_t(samples.size()))];
    QByteArray bytes = sample.bytes;
    breaker.Break(bytes, samples[breaker.Below(std::size_t(samples.size()))].bytes);
    const OwnTime time;
    const Fuzzed result = read(bytes);
    const bool late = time.Seconds() > kLongestSeconds;
    if (result == Fuzzed::Read) ++pictures;
    if (late || result == Fuzzed::OutOfBounds) {
      std::fprintf(stderr, "seed %u, iteration %ld, %s: %s\n", seed, done, sample.name,
                   late ? "takes too long" : "out of bounds");
      return 1;
    }
  }
  std::printf("%ld broken files, %ld of them still a picture\n", done, pictures);
  return pictures > 0 && pictures < done ? 0 : 1;
}
