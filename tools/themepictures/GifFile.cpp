#include "GifFile.h"

#include <algorithm>
#include <map>
#include <vector>

namespace {

constexpr int SeeThrough = 0;
constexpr int MostColors = 255;

struct Counted {
  QRgb color;
  int count;
};

int Part(QRgb color, int part) {
  return int(color >> (8 * part) & 255);
}

// The part of the colour (0 blue, 1 green, 2 red) that differs most among them, and by how much.
std::pair<int, int> Widest(const std::vector<Counted>& box) {
  std::pair<int, int> widest{0, -1};
  for (int part = 0; part < 3; ++part) {
    const auto [low, high] = std::minmax_element(
        box.begin(), box.end(), [part](auto& a, auto& b) { return Part(a.color, part) < Part(b.color, part); });
    const int width = Part(high->color, part) - Part(low->color, part);
    if (width > widest.second) widest = {part, width};
  }
  return widest;
}

QRgb Mean(const std::vector<Counted>& box) {
  long sums[3] = {};
  long count = 0;
  for (const Counted& one : box) {
    for (int part = 0; part < 3; ++part) sums[part] += long(Part(one.color, part)) * one.count;
    count += one.count;
  }
  return qRgb(int((sums[2] + count / 2) / count), int((sums[1] + count / 2) / count),
              int((sums[0] + count / 2) / count));
}

// Halves the box of colours that is spread widest until there are enough boxes.
std::vector<std::vector<Counted>> Boxes(const QImage& picture) {
  std::map<QRgb, int> counts;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) {
      const QRgb pixel = picture.pixel(x, y);
      if (qAlpha(pixel) >= 128) ++counts[pixel & RGB_MASK];
    }
  std::vector<std::vector<Counted>> boxes(1);
  for (const auto& [color, count] : counts) boxes[0].push_back({color, count});
  if (boxes[0].empty()) return {};
  while (boxes.size() < MostColors) {
    const auto box = std::max_element(boxes.begin(), boxes.end(),
                                      [](auto& a, auto& b) { return Widest(a).second < Widest(b).second; });
    const int part = Widest(*box).first;
    if (box->size() < 2) break;
    std::stable_sort(box->begin(), box->end(),
                     [part](auto& a, auto& b) { return Part(a.color, part) < Part(b.color, part); });
    const auto half = box->begin() + std::ptrdiff_t(box->size() / 2);
    std::vector<Counted> upper(half, box->end());
    box->erase(half, box->end());
    boxes.push_back(std::move(upper));
  }
  return boxes;
}

// Codes of growing length, the low bits first, in blocks of at most 255 bytes.
class CodeStream {
 public:
  explicit CodeStream(QByteArray& target) : target_(target) {}

  void Put(int code, int length) {
    bits_ |= unsigned(code) << held_;
    for (held_ += length; held_ >= 8; held_ -= 8, bits_ >>= 8) Byte();
  }

  void End() {
    if (held_ > 0) Byte();
    Flush();
    target_.append('\0');
  }

 private:
  void Byte() {
    block_.append(char(bits_ & 255));
    if (block_.size() == 255) Flush();
  }

  void Flush() {
    if (block_.isEmpty()) return;
    target_.append(char(block_.size()));
    target_.append(block_);
    block_.clear();
  }

  QByteArray& target_;
  QByteArray block_;
  unsigned bits_ = 0;
  int held_ = 0;
};

// The LZW coding of GIF89a: a clear code and an end code above the colours, and at most 4096 codes before a new start.
void PutPixels(QByteArray& target, const std::vector<int>& pixels, int depth) {
  const int clear = 1 << depth;
  const int end = clear + 1;
  constexpr int most = 4096;
  target.append(char(depth));
  CodeStream stream(target);
  std::map<std::pair<int, int>, int> known;
  int length = depth + 1;
  int next = end + 1;
  stream.Put(clear, length);
  int before = pixels.front();
  for (std::size_t at = 1; at < pixels.size(); ++at) {
    const auto found = known.find({before, pixels[at]});
    if (found != known.end()) {
      before = found->second;
      continue;
    }
    stream.Put(before, length);
    if (next < most) {
      // The reader learns a code one step later, so the length grows after the code that needs it first.
      if (next == 1 << length) ++length;
      known[{before, pixels[at]}] = next++;
    } else {
      stream.Put(clear, length);
      known.clear();
      length = depth + 1;
      next = end + 1;
    }
    before = pixels[at];
  }
  stream.Put(before, length);
  if (next < most && next == 1 << length) ++length;
  stream.Put(end, length);
  stream.End();
}

void PutShort(QByteArray& target, int number) {
  target.append(char(number & 255));
  target.append(char(number >> 8));
}

}  // namespace

QByteArray GifFile(const QImage& picture) {
  const std::vector<std::vector<Counted>> boxes = Boxes(picture);
  std::map<QRgb, int> places;
  std::vector<QRgb> colors{qRgb(255, 255, 255)};
  for (const std::vector<Counted>& box : boxes) {
    for (const Counted& one : box) places[one.color] = int(colors.size());
    colors.push_back(Mean(box));
  }
  int depth = 2;
  while (1 << depth < int(colors.size())) ++depth;
  colors.resize(std::size_t(1) << depth);

  std::vector<int> pixels;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) {
      const QRgb pixel = picture.pixel(x, y);
      pixels.push_back(qAlpha(pixel) < 128 ? SeeThrough : places[pixel & RGB_MASK]);
    }

  QByteArray file("GIF89a");
  PutShort(file, picture.width());
  PutShort(file, picture.height());
  file.append(char(0x80 | (depth - 1) << 4 | (depth - 1)));
  file.append('\0').append('\0');
  for (const QRgb color : colors) file.append(char(qRed(color))).append(char(qGreen(color))).append(char(qBlue(color)));
  // Graphic control: one colour is see-through, no delay.
  file.append("\x21\xF9\x04\x01", 4);
  PutShort(file, 0);
  file.append(char(SeeThrough)).append('\0');
  file.append('\x2C');
  PutShort(file, 0);
  PutShort(file, 0);
  PutShort(file, picture.width());
  PutShort(file, picture.height());
  file.append('\0');
  PutPixels(file, pixels, depth);
  file.append('\x3B');
  return file;
}
