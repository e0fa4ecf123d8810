// A figure: ours and the peer's measured by turns, at least five pairs of them, and the one line that tells of it.
#pragma once

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <utility>
#include <vector>

// The value below which that part of the values lies.
inline double Quantile(std::vector<double> values, double part) {
  std::sort(values.begin(), values.end());
  return values[std::min(values.size() - 1, std::size_t(part * double(values.size())))];
}

inline double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return (values[(values.size() - 1) / 2] + values[values.size() / 2]) / 2;
}

// benchmarks/Figure.py is the same for Python; a test holds their lines together.
class Figure {
 public:
  explicit Figure(std::string name, std::string unit = "ms") : name_(std::move(name)), unit_(std::move(unit)) {}

  // What one turn gave.
  void Add(double ours, double peer) {
    ours_.push_back(ours);
    peer_.push_back(peer);
  }

  // What the line tells besides, at its end.
  void Note(const std::string& key, double value) { Note(key, Text(value)); }
  void Note(const std::string& key, const std::string& value) { notes_ += ' ' + key + '=' + value; }

  // The medians decide: a single turn may have met with anything.
  double Ratio() const { return Median(ours_) / Median(peer_); }

  // Prints the line; tells whether the ratio is no more than the bound.
  bool Print(double bound = std::numeric_limits<double>::infinity()) const {
    assert(!ours_.empty());
    std::vector<double> ratios;
    for (std::size_t turn = 0; turn < ours_.size(); ++turn) ratios.push_back(ours_[turn] / peer_[turn]);
    std::sort(ratios.begin(), ratios.end());
    // The lowest and the highest decile; of fewer than ten the least and the most.
    const std::size_t outside = ratios.size() / 10;
    std::printf("BENCH name=%s ours=%s peer=%s ratio=%.4f unit=%s pairs=%zu low=%.4f high=%.4f%s%s\n", name_.c_str(),
                Text(Median(ours_)).c_str(), Text(Median(peer_)).c_str(), Ratio(), unit_.c_str(), ratios.size(),
                ratios[outside], ratios[ratios.size() - 1 - outside], notes_.c_str(),
                IsUnsteady() ? " unsteady=yes" : "");
    std::fflush(stdout);
    return Ratio() <= bound;
  }

 private:
  // Two measurements in one: where even turns tell something else than odd ones, a second run would, too.
  bool IsUnsteady() const {
    constexpr double tolerance = 1.15;
    if (ours_.size() < 2) return false;
    const double even = HalfRatio(0), odd = HalfRatio(1);
    return std::max(even, odd) > tolerance * std::min(even, odd);
  }

  double HalfRatio(std::size_t first) const {
    std::vector<double> ours, peer;
    for (std::size_t turn = first; turn < ours_.size(); turn += 2) {
      ours.push_back(ours_[turn]);
      peer.push_back(peer_[turn]);
    }
    return Median(ours) / Median(peer);
  }

  // Four digits that count, and never a whole number's cut off.
  static std::string Text(double value) {
    char text[64];
    const double size = std::fabs(value);
    std::snprintf(text, sizeof text, "%.*f", size >= 1000 ? 0 : size >= 100 ? 1 : size >= 10 ? 2 : 3, value);
    return text;
  }

  std::string name_, unit_, notes_;
  std::vector<double> ours_, peer_;
};
