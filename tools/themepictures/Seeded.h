// Random numbers that are the same on every machine and in every run.
#pragma once

#include <cstdint>

// Spreads the bits of a number over the whole word.
constexpr std::uint64_t Scatter(std::uint64_t bits) {
  bits += 0x9E3779B97F4A7C15u;
  bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9u;
  bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBu;
  return bits ^ (bits >> 31);
}

// From 0 up to, but without, 1.
constexpr double UnitOf(std::uint64_t bits) {
  return double(bits >> 11) / 9007199254740992.0;
}

class Seeded {
 public:
  explicit Seeded(std::uint64_t seed) : state_(Scatter(seed)) {}

  std::uint64_t Next() { return Scatter(state_++); }
  double Unit() { return UnitOf(Next()); }
  double Between(double low, double high) { return low + (high - low) * Unit(); }

 private:
  std::uint64_t state_;
};
