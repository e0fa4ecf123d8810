#include "Base64.h"

#include <QFile>
#include <algorithm>
#include <array>

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr qsizetype kLine = 76;
constexpr qsizetype kBytesOfLine = kLine / 4 * 3;
// Shorter sources are one line, whatever their text's length.
constexpr qsizetype kLeastBroken = 77;

struct Pair {
  char first, second;
};

// The two characters of every twelve bits.
constexpr std::array<Pair, 4096> PairTable() {
  std::array<Pair, 4096> table{};
  for (std::size_t at = 0; at < table.size(); ++at) table[at] = {kAlphabet[at / 64], kAlphabet[at % 64]};
  return table;
}
constexpr std::array<Pair, 4096> kPairs = PairTable();

// Encodes whole groups of three bytes; returns the place behind the text.
char* EncodeGroups(char* to, const uchar* from, qsizetype bytes) {
  for (const uchar* const end = from + bytes; from < end; from += 3, to += 4) {
    const Pair& high = kPairs[std::size_t(from[0] << 4 | from[1] >> 4)];
    const Pair& low = kPairs[std::size_t((from[1] & 15) << 8 | from[2])];
    to[0] = high.first;
    to[1] = high.second;
    to[2] = low.first;
    to[3] = low.second;
  }
  return to;
}

// The last bytes, fewer than three, filled up with zeros.
char* EncodeRest(char* to, const uchar* from, qsizetype bytes) {
  if (bytes == 0) return to;
  uchar group[3] = {};
  std::copy_n(from, bytes, group);
  to = EncodeGroups(to, group, 3);
  std::fill(to - (3 - bytes), to, '=');
  return to;
}

void Append(QByteArray& text, const QByteArray& source, LineBreaks breaks) {
  const bool broken = breaks == LineBreaks::Every76 && source.size() >= kLeastBroken;
  const qsizetype length = (source.size() + 2) / 3 * 4;
  const qsizetype start = text.size();
  text.resize(start + length + (broken ? length / kLine * 2 : 0));
  char* to = text.data() + start;
  const auto* from = reinterpret_cast<const uchar*>(source.constData());
  qsizetype left = source.size();
  while (broken && left > kBytesOfLine) {
    to = EncodeGroups(to, from, kBytesOfLine);
    *to++ = '\r';
    *to++ = '\n';
    from += kBytesOfLine;
    left -= kBytesOfLine;
  }
  const qsizetype whole = left / 3 * 3;
  to = EncodeRest(EncodeGroups(to, from, whole), from + whole, left - whole);
  // The room of a break that doesn't follow a full last line.
  std::fill(to, text.data() + text.size(), '\0');
}

constexpr uchar kOutside = 64;

std::array<uchar, 256> ValueTable() {
  std::array<uchar, 256> table;
  table.fill(kOutside);
  for (uchar value = 0; value < kOutside; ++value) table[static_cast<uchar>(kAlphabet[value])] = value;
  return table;
}

}  // namespace

QByteArray EncodeBase64(const QByteArray& source, LineBreaks breaks) {
  QByteArray text;
  Append(text, source, breaks);
  return text;
}

void AppendBase64OfFile(QByteArray& text, const QString& path, LineBreaks breaks) {
  QFile file(path);
  if (file.open(QIODevice::ReadOnly)) Append(text, file.readAll(), breaks);
}

QByteArray DecodeBase64(const QByteArray& text) {
  static const std::array<uchar, 256> values = ValueTable();
  QByteArray bytes;
  bytes.reserve(text.size() / 4 * 3);
  for (qsizetype at = 0; at + 4 <= text.size(); at += 4) {
    const auto value = [&](qsizetype place) { return values[static_cast<uchar>(text.at(at + place))]; };
    bytes.append(static_cast<char>(value(0) * 4 | value(1) / 16));
    bytes.append(static_cast<char>(value(1) % 16 * 16 | value(2) / 4));
    bytes.append(static_cast<char>(value(2) % 4 * 64 | value(3)));
  }
  // By the text's own end, also where an incomplete group stands there.
  if (text.size() >= 2 && text.at(text.size() - 2) == '=') {
    bytes.chop(2);
  } else if (text.endsWith('=')) {
    bytes.chop(1);
  }
  return bytes;
}
