#include "Base64.h"

#include <QFile>
#include <QtEndian>
#include <algorithm>
#include <array>
#include <cstring>

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
  const uchar* const end = from + bytes;
  // Two groups out of one number of eight bytes, as long as so many are there.
  for (; end - from >= qsizetype(sizeof(quint64)); from += 6, to += 8) {
    const auto number = qFromBigEndian<quint64>(from);
    std::memcpy(to, &kPairs[number >> 52], sizeof(Pair));
    std::memcpy(to + 2, &kPairs[number >> 40 & 4095], sizeof(Pair));
    std::memcpy(to + 4, &kPairs[number >> 28 & 4095], sizeof(Pair));
    std::memcpy(to + 6, &kPairs[number >> 16 & 4095], sizeof(Pair));
  }
  for (; from < end; from += 3, to += 4) {
    std::memcpy(to, &kPairs[std::size_t(from[0] << 4 | from[1] >> 4)], sizeof(Pair));
    std::memcpy(to + 2, &kPairs[std::size_t((from[1] & 15) << 8 | from[2])], sizeof(Pair));
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

// Bytes of a file that are read at once, whole lines and whole groups.
constexpr qsizetype kChunk = kBytesOfLine * 4096;

// Puts the text of some bytes behind another, every full line with a break behind it.
void AppendLines(QByteArray& text, const uchar* from, qsizetype bytes) {
  const qsizetype start = text.size();
  text.resize(start + Base64Length(bytes));
  char* to = text.data() + start;
  const auto breakLine = [&] {
    *to++ = '\r';
    *to++ = '\n';
  };
  for (; bytes >= kBytesOfLine; bytes -= kBytesOfLine, from += kBytesOfLine) {
    to = EncodeGroups(to, from, kBytesOfLine);
    breakLine();
  }
  const qsizetype whole = bytes / 3 * 3;
  to = EncodeRest(EncodeGroups(to, from, whole), from + whole, bytes - whole);
  // The rest fills a line where its last group is padded to one.
  if (to != text.data() + text.size()) breakLine();
}

void AppendOneLine(QByteArray& text, const uchar* from, qsizetype bytes) {
  const qsizetype start = text.size();
  text.resize(start + (bytes + 2) / 3 * 4);
  const qsizetype whole = bytes / 3 * 3;
  EncodeRest(EncodeGroups(text.data() + start, from, whole), from + whole, bytes - whole);
}

void EndLines(QByteArray& text) {
  if (text.endsWith("\r\n")) text.replace(text.size() - 2, 2, "\0\0", 2);
}

// Number of bytes; fewer than there is room for only at the end of the file.
qsizetype ReadWhole(QFile& file, QByteArray& room) {
  qsizetype size = 0;
  while (size < room.size()) {
    const qint64 got = file.read(room.data() + size, room.size() - size);
    if (got <= 0) break;
    size += got;
  }
  return size;
}

const uchar* BytesOf(const QByteArray& source) {
  return reinterpret_cast<const uchar*>(source.constData());
}

constexpr uchar kOutside = 64;

std::array<uchar, 256> ValueTable() {
  std::array<uchar, 256> table;
  table.fill(kOutside);
  for (uchar value = 0; value < kOutside; ++value) table[uchar(kAlphabet[value])] = value;
  return table;
}

}  // namespace

qsizetype Base64Length(qsizetype bytes) {
  const qsizetype length = (bytes + 2) / 3 * 4;
  return length + length / kLine * 2;
}

QByteArray EncodeBase64(const QByteArray& source, LineBreaks breaks) {
  QByteArray text;
  if (breaks == LineBreaks::None || source.size() < kLeastBroken) {
    AppendOneLine(text, BytesOf(source), source.size());
  } else {
    AppendLines(text, BytesOf(source), source.size());
    EndLines(text);
  }
  return text;
}

// The file is never in memory as a whole.
void AppendBase64OfFile(QByteArray& text, const QString& path, LineBreaks breaks) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) return;
  text.reserve(text.size() + Base64Length(file.size()) + kLine);
  QByteArray chunk(kChunk, Qt::Uninitialized);
  bool broken = breaks == LineBreaks::Every76;
  for (qsizetype size = kChunk; size == kChunk;) {
    size = ReadWhole(file, chunk);
    if (file.pos() < kLeastBroken) broken = false;
    if (broken) {
      AppendLines(text, BytesOf(chunk), size);
    } else {
      AppendOneLine(text, BytesOf(chunk), size);
    }
  }
  if (broken) EndLines(text);
}

QByteArray DecodeBase64(const QByteArray& text) {
  static const std::array<uchar, 256> values = ValueTable();
  QByteArray bytes;
  bytes.reserve(text.size() / 4 * 3);
  for (qsizetype at = 0; at + 4 <= text.size(); at += 4) {
    const auto value = [&](qsizetype place) { return values[uchar(text.at(at + place))]; };
    bytes.append(char(value(0) * 4 | value(1) / 16));
    bytes.append(char(value(1) % 16 * 16 | value(2) / 4));
    bytes.append(char(value(2) % 4 * 64 | value(3)));
  }
  // By the text's own end, also where an incomplete group stands there.
  if (text.size() >= 2 && text.at(text.size() - 2) == '=') {
    bytes.chop(2);
  } else if (text.endsWith('=')) {
    bytes.chop(1);
  }
  return bytes;
}
