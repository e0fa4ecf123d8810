// Breaks the bytes of a file in a few places, the same way every time for the same seed.
#pragma once

#include <QByteArray>
#include <algorithm>
#include <iterator>
#include <random>

#include "PictureFiles.h"

class Breaker {
 public:
  explicit Breaker(unsigned seed) : random_(seed) {}

  // 0 to bound - 1.
  int Below(std::size_t bound) { return int(random_() % bound); }

  // With pieces of its own, of another file, and numbers that are often forgotten.
  void Break(QByteArray& bytes, const QByteArray& other) {
    for (int count = 1 + Below(6); count > 0 && !bytes.isEmpty(); --count) {
      // Half of the time in the first bytes, where the sizes stand.
      const int at = Below(std::size_t(Below(2) ? std::min<qsizetype>(bytes.size(), 64) : bytes.size()));
      switch (Below(8)) {
        case 0:
          bytes.truncate(at);
          break;
        case 1:
          bytes.remove(at, 1 + Below(8));
          break;
        case 2:
          bytes.insert(at, bytes.mid(Below(std::size_t(bytes.size())), 1 + Below(64)));
          break;
        case 3:
          bytes.replace(at, 1 + Below(32), other.mid(Below(std::size_t(other.size())), 1 + Below(32)));
          break;
        case 4: {
          static const quint32 numbers[] = {0, 1, 0x7F, 0xFF, 0x7FFF, 0xFFFF, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
          const int length = 1 << Below(3);
          if (at + length > bytes.size()) break;
          const quint32 number = numbers[Below(std::size(numbers))];
          Below(2) ? PutLittle(bytes, at, number, length) : PutBig(bytes, at, number, length);
          break;
        }
        case 5:
          bytes[at] = char(bytes[at] ^ (1 << Below(8)));
          break;
        default:
          bytes[at] = char(Below(256));
      }
    }
  }

 private:
  std::mt19937 random_;
};
