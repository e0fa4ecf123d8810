// Where the random steps of a test begin: elsewhere in every run, told before the first step, and played again with
// CORVANE_SEED in the environment.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <random>
#include <vector>

// What CORVANE_SEED names; nullptr where it names nothing.
inline const char* ToldSeed() {
  const char* told = std::getenv("CORVANE_SEED");
  return told != nullptr && *told != '\0' ? told : nullptr;
}

// A seed that nobody has seen, or the one that CORVANE_SEED names. It is printed with `what`, at once, so that a run
// that crashes or hangs has told it as well.
inline unsigned RandomSeed(const char* what) {
  const char* told = ToldSeed();
  const unsigned seed =
      told != nullptr ? unsigned(std::strtoul(told, nullptr, 10)) : std::random_device()() % 1000000000U;
  std::printf("%s: CORVANE_SEED=%u\n", what, seed);
  std::fflush(stdout);
  return seed;
}

// The seeds of `count` runs of random steps: those that found something one day, then fresh ones that count up from
// RandomSeed(). With CORVANE_SEED the run begins with that very seed, so the one that failed is the first.
inline std::vector<unsigned> RandomSeeds(const char* what, int count, std::initializer_list<unsigned> found = {}) {
  const unsigned first = RandomSeed(what);
  std::vector<unsigned> seeds;
  if (ToldSeed() == nullptr) seeds.assign(found);
  for (unsigned at = 0; at < unsigned(count); ++at) seeds.push_back(first + at);
  return seeds;
}
