#include <gtest/gtest.h>
#include <zlib.h>

#include <memory>
#include <random>

#include "PackMaker.h"

namespace {

struct Stream {
  Bytes input;
  size_t step = 1 << 20;  // bytes given at a time
  size_t at = 0;
  Bytes output;
  size_t room = SIZE_MAX;
};

uint32_t readStream(void* context, const uint8_t** bytes) {
  auto* stream = static_cast<Stream*>(context);
  size_t count = std::min(stream->step, stream->input.size() - stream->at);
  *bytes = stream->input.data() + stream->at;
  stream->at += count;
  return uint32_t(count);
}

int writeStream(void* context, const uint8_t* bytes, uint32_t count) {
  auto* stream = static_cast<Stream*>(context);
  if (count > stream->room) return 0;
  stream->room -= count;
  stream->output.insert(stream->output.end(), bytes, bytes + count);
  return 1;
}

InflateResult inflateStream(Stream& stream) {
  auto work = std::make_unique<InflateWork>();
  memset(work.get(), 0xA5, sizeof(InflateWork));
  InflatePorts ports{&stream, readStream, writeStream};
  return Inflate(work.get(), &ports);
}

Bytes textLike(size_t size, unsigned seed) {
  std::mt19937 random(seed);
  static const char* const words[] = {"<p>", "page ", "the ", "picture", "\r\n", "href=", "\"Page2.html\"", "a", "zz"};
  Bytes out;
  while (out.size() < size)
    for (const char* at = words[random() % 9]; *at; at++) out.push_back(uint8_t(*at));
  out.resize(size);
  return out;
}

Bytes noise(size_t size, unsigned seed, unsigned kinds) {
  std::mt19937 random(seed);
  Bytes out(size);
  for (uint8_t& byte : out) byte = uint8_t(random() % kinds);
  return out;
}

// Bits as RFC 1951 packs them, for streams that no compressor makes.
class Bits {
 public:
  Bits& put(unsigned value, int count) {
    for (int bit = 0; bit < count; bit++) one(value >> bit & 1);
    return *this;
  }
  Bits& code(unsigned value, int count) {
    while (count-- > 0) one(value >> count & 1);
    return *this;
  }
  Bytes bytes;

 private:
  void one(unsigned bit) {
    if (used_ % 8 == 0) bytes.push_back(0);
    bytes.back() = uint8_t(bytes.back() | bit << used_ % 8);
    used_++;
  }
  int used_ = 0;
};

// The start of a dynamic block whose code lengths are told by 4 codes of 2 bits: 0, 1, 2 and 18 (a run of zeros).
Bits dynamicHead(int literals, int distances) {
  Bits bits;
  bits.put(1, 1).put(2, 2).put(unsigned(literals - 257), 5).put(unsigned(distances - 1), 5).put(14, 4);
  static const int order[18] = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1};
  for (int symbol : order) bits.put(symbol == 0 || symbol == 1 || symbol == 2 || symbol == 18 ? 2 : 0, 3);
  return bits;
}
constexpr unsigned codeOf0 = 0, codeOf1 = 1, codeOf2 = 2, codeOf18 = 3;

}  // namespace

TEST(Inflate, UndoesWhatZlibMakes) {
  struct Row {
    const char* name;
    int level, strategy;
  };
  static const Row rows[] = {{"stored", 0, Z_DEFAULT_STRATEGY},     {"fixed", 9, Z_FIXED},
                             {"dynamic", 9, Z_DEFAULT_STRATEGY},    {"fast", 1, Z_DEFAULT_STRATEGY},
                             {"literals alone", 9, Z_HUFFMAN_ONLY}, {"runs", 9, Z_RLE}};
  for (const Row& row : rows)
    for (size_t size : {0, 1, 2, 100, 32767, 32768, 32769, 65535, 65536, 300000})
      for (unsigned kind = 0; kind < 3; kind++) {
        Bytes data = kind == 0 ? textLike(size, 7) : noise(size, 9, kind == 1 ? 256 : 3);
        Stream stream;
        stream.input = deflated(data, row.level, row.strategy);
        stream.step = size % 7 == 1 ? 1 : 1000;
        ASSERT_EQ(inflateStream(stream), InflateDone) << row.name << " " << size << " " << kind;
        ASSERT_TRUE(stream.output == data) << row.name << " " << size << " " << kind;
      }
}

TEST(Inflate, GivesBackWhatThePacksAreCompressedWith) {
  for (int level : {1, 6, 9, 12})
    for (size_t size : {0, 1, 2, 100, 32768, 32769, 65536, 300000})
      for (unsigned kind = 0; kind < 3; kind++) {
        const Bytes data = kind == 0 ? textLike(size, 7) : noise(size, 9, kind == 1 ? 256 : 3);
        Stream stream;
        stream.input = deflatedAsShipped(data, level);
        stream.step = size == 100 ? 1 : 1000;
        ASSERT_EQ(inflateStream(stream), InflateDone) << level << " " << size << " " << kind;
        ASSERT_TRUE(stream.output == data) << level << " " << size << " " << kind;
      }
}

TEST(Inflate, ReachesBackOverTheWholeWindow) {
  Bytes far = noise(32768, 3, 256);
  far.insert(far.end(), far.begin(), far.begin() + 258);
  Stream stream;
  stream.input = deflated(noise(32768, 3, 256), 0, Z_DEFAULT_STRATEGY);
  stream.input[0] &= 0xFE;  // the stored block isn't the last one
  Bits bits;
  bits.put(1, 1).put(1, 2).code(0xC5, 8).code(29, 5).put((1 << 13) - 1, 13).code(0, 7);  // length 258, distance 32768
  stream.input.insert(stream.input.end(), bits.bytes.begin(), bits.bytes.end());
  ASSERT_EQ(inflateStream(stream), InflateDone);
  EXPECT_TRUE(stream.output == far);
}

TEST(Inflate, RefusesADistanceBeforeTheStart) {
  Stream stream;
  stream.input = Bits().put(1, 1).put(1, 2).code(0x30 + 'a', 8).code(1, 7).code(1, 5).code(0, 7).bytes;
  EXPECT_EQ(inflateStream(stream), InflateDamaged);
}

TEST(Inflate, RefusesWhatTheFixedCodesLeaveUnused) {
  for (unsigned literal : {286u, 287u}) {
    Stream stream;
    stream.input = Bits().put(1, 1).put(1, 2).code(0xC0 + literal - 280, 8).put(0, 16).bytes;
    EXPECT_EQ(inflateStream(stream), InflateDamaged) << literal;
  }
  for (unsigned distance : {30u, 31u}) {
    Stream stream;
    stream.input = Bits().put(1, 1).put(1, 2).code(0x30 + 'a', 8).code(1, 7).code(distance, 5).put(0, 32).bytes;
    EXPECT_EQ(inflateStream(stream), InflateDamaged) << distance;
  }
  Stream kind;
  kind.input = Bits().put(1, 1).put(3, 2).put(0, 32).bytes;
  EXPECT_EQ(inflateStream(kind), InflateDamaged);
}

TEST(Inflate, TakesABlockWithOneDistanceCodeOrNone) {
  for (unsigned lengthOfDistance : {codeOf0, codeOf1}) {
    // Literals 0 and 256 have a code of one bit each.
    Bits bits = dynamicHead(257, 1);
    bits.code(codeOf1, 2).code(codeOf18, 2).put(127, 7).code(codeOf18, 2).put(255 - 138 - 11, 7).code(codeOf1, 2);
    bits.code(lengthOfDistance, 2).code(0, 1).code(0, 1).code(1, 1);
    Stream stream;
    stream.input = bits.bytes;
    ASSERT_EQ(inflateStream(stream), InflateDone);
    EXPECT_EQ(stream.output, Bytes(2, 0));
  }
}

TEST(Inflate, RefusesCodesThatAreTooManyOrTooFew) {
  struct Row {
    const char* name;
    unsigned first, last, distance;
  };
  // The codes of literal 0, of literal 256 and of distance 0.
  static const Row rows[] = {{"no end of block", codeOf1, codeOf0, codeOf1},
                             {"too few literals", codeOf2, codeOf1, codeOf1},
                             {"one distance of 2 bits", codeOf1, codeOf1, codeOf2}};
  for (const Row& row : rows) {
    Bits bits = dynamicHead(257, 1);
    bits.code(row.first, 2).code(codeOf18, 2).put(127, 7).code(codeOf18, 2).put(255 - 138 - 11, 7);
    bits.code(row.last, 2).code(row.distance, 2).put(0, 32);
    Stream stream;
    stream.input = bits.bytes;
    EXPECT_EQ(inflateStream(stream), InflateDamaged) << row.name;
  }
  Bits tooMany = dynamicHead(258, 1);
  tooMany.code(codeOf1, 2).code(codeOf18, 2).put(127, 7).code(codeOf18, 2).put(255 - 138 - 11, 7);
  tooMany.code(codeOf1, 2).code(codeOf1, 2).code(codeOf1, 2).put(0, 32);
  Stream stream;
  stream.input = tooMany.bytes;
  EXPECT_EQ(inflateStream(stream), InflateDamaged);
}

TEST(Inflate, RefusesAStreamCutAnywhere) {
  for (int strategy : {Z_FIXED, Z_DEFAULT_STRATEGY}) {
    Bytes whole = deflated(textLike(600, 1), 9, strategy);
    for (size_t size = 0; size < whole.size(); size++) {
      Stream stream;
      stream.input.assign(whole.begin(), whole.begin() + long(size));
      EXPECT_EQ(inflateStream(stream), InflateDamaged) << size;
    }
  }
}

TEST(Inflate, StopsWhenNothingMoreCanBeWritten) {
  Stream stream;
  stream.input = deflated(Bytes(200000, 'x'), 9, Z_DEFAULT_STRATEGY);
  stream.room = 100000;
  EXPECT_EQ(inflateStream(stream), InflateStopped);
  EXPECT_EQ(stream.output.size(), 3u * InflateWindowSize);
}
