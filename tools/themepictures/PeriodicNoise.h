// Smooth random fields that repeat: where a field ends it goes on as it began, so a tile cut from it has no seam.
#pragma once

#include <cstdint>

// Gradient noise over a lattice of `columns` by `rows` points. Takes coordinates in lattice cells, of any size and
// sign; repeats after `columns` and `rows`. The values lie between -1 and 1, most of them within half of that.
class PeriodicNoise {
 public:
  PeriodicNoise(std::uint64_t seed, int columns, int rows) : seed_(seed), columns_(columns), rows_(rows) {}

  double At(double x, double y) const;

 private:
  double Corner(long column, long row, double dx, double dy) const;

  std::uint64_t seed_;
  int columns_;
  int rows_;
};

// `octaves` fields laid over each other, each twice as fine as the one before and `gain` times as strong. Takes tile
// coordinates: 0 to 1 is one tile both ways. Values are scaled back to between -1 and 1.
class CloudNoise {
 public:
  CloudNoise(std::uint64_t seed, int columns, int rows, int octaves, double gain = 0.5)
      : seed_(seed), columns_(columns), rows_(rows), octaves_(octaves), gain_(gain) {}

  double At(double u, double v) const;

 private:
  std::uint64_t seed_;
  int columns_;
  int rows_;
  int octaves_;
  double gain_;
};
