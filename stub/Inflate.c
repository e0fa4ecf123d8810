#include "Inflate.h"

#include <string.h>

enum { EndOfBlock = 256, LengthCodes = 29, DistanceCodes = 30, MaxLiteralCodes = 286, MaxDistanceCodes = 30 };

/* Every routine below returns a negative number for failure, with the kind of it in `fault`. */
static int Fail(InflateWork* work, InflateResult fault) {
  work->fault = fault;
  return -1;
}

/* Makes at least `count` bits ready, up to 25, as far as the input reaches. */
static void FillBits(InflateWork* work, uint32_t count) {
  while (work->bitCount < count) {
    if (work->inputLeft == 0) {
      work->inputLeft = work->ports.read(work->ports.context, &work->input);
      if (work->inputLeft == 0) return;
    }
    work->bits |= (uint32_t)*work->input++ << work->bitCount;
    work->inputLeft--;
    work->bitCount += 8;
  }
}

static void DropBits(InflateWork* work, uint32_t count) {
  work->bits >>= count;
  work->bitCount -= count;
}

static int TakeBits(InflateWork* work, uint32_t count) {
  int value;
  FillBits(work, count);
  if (work->bitCount < count) return Fail(work, InflateDamaged);
  value = (int)(work->bits & ((1u << count) - 1));
  DropBits(work, count);
  return value;
}

static int Flush(InflateWork* work) {
  if (work->filled != 0 && !work->ports.write(work->ports.context, work->window, work->filled))
    return Fail(work, InflateStopped);
  if (work->filled == InflateWindowSize) {
    work->filled = 0;
    work->wrapped = 1;
  }
  return 0;
}

static int Put(InflateWork* work, uint8_t byte) {
  work->window[work->filled++] = byte;
  return work->filled == InflateWindowSize ? Flush(work) : 0;
}

/* Builds a code from the code length of each symbol; 0 is a symbol without a code. Returns how many codes are missing
   to a complete set, or -1 when the lengths ask for more codes than there are. */
static int BuildCode(InflateCode* code, const uint8_t* lengths, uint32_t symbols) {
  uint16_t next[InflateMaxBits + 1];
  uint16_t place[InflateMaxBits + 1];
  uint32_t symbol, length, first = 0;
  int left = 1;

  memset(code, 0, sizeof *code);
  for (symbol = 0; symbol < symbols; symbol++) code->count[lengths[symbol]]++;
  code->count[0] = 0;
  place[0] = 0;
  for (length = 1; length <= InflateMaxBits; length++) {
    left = left * 2 - code->count[length];
    if (left < 0) return -1;
    first = (first + code->count[length - 1]) << 1;
    next[length] = (uint16_t)first;
    place[length] = (uint16_t)(place[length - 1] + code->count[length - 1]);
  }
  for (symbol = 0; symbol < symbols; symbol++) {
    uint32_t reversed = 0, bit, index;
    length = lengths[symbol];
    if (length == 0) continue;
    code->symbol[place[length]++] = (uint16_t)symbol;
    index = next[length]++;
    if (length > InflateFastBits) continue;
    for (bit = 0; bit < length; bit++) reversed |= (index >> bit & 1) << (length - 1 - bit);
    for (; reversed < 1u << InflateFastBits; reversed += 1u << length)
      code->fast[reversed] = (uint16_t)(symbol << 4 | length);
  }
  return left;
}

static int TakeSymbol(InflateWork* work, const InflateCode* code) {
  int value = 0, first = 0, index = 0;
  uint32_t length, entry;

  FillBits(work, InflateMaxBits);
  entry = code->fast[work->bits & ((1u << InflateFastBits) - 1)];
  if (entry != 0 && (entry & 15) <= work->bitCount) {
    DropBits(work, entry & 15);
    return (int)(entry >> 4);
  }
  for (length = 1; length <= InflateMaxBits && length <= work->bitCount; length++) {
    value |= (int)(work->bits >> (length - 1) & 1);
    if (value - first < code->count[length]) {
      DropBits(work, length);
      return code->symbol[index + value - first];
    }
    index += code->count[length];
    first = (first + code->count[length]) << 1;
    value <<= 1;
  }
  return Fail(work, InflateDamaged);
}

static int CopyStored(InflateWork* work) {
  int length, complement;
  DropBits(work, work->bitCount & 7);
  length = TakeBits(work, 16);
  if (length < 0) return -1;
  complement = TakeBits(work, 16);
  if (complement < 0) return -1;
  if (complement != (length ^ 0xFFFF)) return Fail(work, InflateDamaged);
  for (; length > 0 && work->bitCount != 0; length--)
    if (Put(work, (uint8_t)TakeBits(work, 8)) < 0) return -1;
  while (length > 0) {
    uint32_t count = (uint32_t)length;
    if (work->inputLeft == 0) work->inputLeft = work->ports.read(work->ports.context, &work->input);
    if (work->inputLeft == 0) return Fail(work, InflateDamaged);
    if (count > work->inputLeft) count = work->inputLeft;
    if (count > InflateWindowSize - work->filled) count = InflateWindowSize - work->filled;
    memcpy(work->window + work->filled, work->input, count);
    work->input += count;
    work->inputLeft -= count;
    work->filled += count;
    length -= (int)count;
    if (work->filled == InflateWindowSize && Flush(work) < 0) return -1;
  }
  return 0;
}

/* Lengths and distances grow by the rule of RFC 1951, 3.2.5: after the first codes, every 4 (2) of them take one more
   extra bit. */
static int TakeLength(InflateWork* work, int code) {
  int extra, bits;
  if (code >= LengthCodes) return Fail(work, InflateDamaged);
  if (code < 8) return 3 + code;
  if (code == LengthCodes - 1) return 258;
  extra = code / 4 - 1;
  bits = TakeBits(work, (uint32_t)extra);
  return bits < 0 ? -1 : 3 + ((4 + code % 4) << extra) + bits;
}

static int TakeDistance(InflateWork* work, int code) {
  int extra, bits;
  if (code >= DistanceCodes) return Fail(work, InflateDamaged);
  if (code < 4) return 1 + code;
  extra = code / 2 - 1;
  bits = TakeBits(work, (uint32_t)extra);
  return bits < 0 ? -1 : 1 + ((2 + code % 2) << extra) + bits;
}

static int CopyCompressed(InflateWork* work) {
  for (;;) {
    int symbol = TakeSymbol(work, &work->literals);
    int length, distance;
    uint32_t from;
    if (symbol < 0) return -1;
    if (symbol == EndOfBlock) return 0;
    if (symbol < EndOfBlock) {
      if (Put(work, (uint8_t)symbol) < 0) return -1;
      continue;
    }
    length = TakeLength(work, symbol - EndOfBlock - 1);
    if (length < 0) return -1;
    symbol = TakeSymbol(work, &work->distances);
    if (symbol < 0) return -1;
    distance = TakeDistance(work, symbol);
    if (distance < 0) return -1;
    if (!work->wrapped && (uint32_t)distance > work->filled) return Fail(work, InflateDamaged);
    from = (work->filled - (uint32_t)distance) & (InflateWindowSize - 1);
    while (length-- > 0) {
      if (Put(work, work->window[from]) < 0) return -1;
      from = (from + 1) & (InflateWindowSize - 1);
    }
  }
}

static void BuildFixedCodes(InflateWork* work) {
  memset(work->lengths, 8, 144);
  memset(work->lengths + 144, 9, 112);
  memset(work->lengths + 256, 7, 24);
  memset(work->lengths + 280, 8, 8);
  BuildCode(&work->literals, work->lengths, 288);
  memset(work->lengths, 5, 32);
  BuildCode(&work->distances, work->lengths, 32);
}

/* A set of codes may be incomplete only when it has one code or none: a block without distances needs none. */
static int IsUsable(const InflateCode* code, int left) {
  int length, codes = 0;
  for (length = 1; length <= InflateMaxBits; length++) codes += code->count[length];
  return left == 0 || (left > 0 && (codes == 0 || (codes == 1 && code->count[1] == 1)));
}

static int ReadDynamicCodes(InflateWork* work) {
  static const uint8_t order[19] = {16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15};
  int literals, distances, lengths, index, left;

  literals = TakeBits(work, 5);
  if (literals < 0) return -1;
  distances = TakeBits(work, 5);
  if (distances < 0) return -1;
  lengths = TakeBits(work, 4);
  if (lengths < 0) return -1;
  literals += 257;
  distances += 1;
  lengths += 4;
  if (literals > MaxLiteralCodes || distances > MaxDistanceCodes) return Fail(work, InflateDamaged);

  memset(work->lengths, 0, 19);
  for (index = 0; index < lengths; index++) {
    int length = TakeBits(work, 3);
    if (length < 0) return -1;
    work->lengths[order[index]] = (uint8_t)length;
  }
  if (BuildCode(&work->literals, work->lengths, 19) != 0) return Fail(work, InflateDamaged);

  index = 0;
  while (index < literals + distances) {
    int symbol = TakeSymbol(work, &work->literals);
    int repeat, value = 0;
    if (symbol < 0) return -1;
    if (symbol < 16) {
      work->lengths[index++] = (uint8_t)symbol;
      continue;
    }
    if (symbol == 16) {
      if (index == 0) return Fail(work, InflateDamaged);
      value = work->lengths[index - 1];
      repeat = TakeBits(work, 2);
    } else if (symbol == 17) {
      repeat = TakeBits(work, 3);
    } else {
      repeat = TakeBits(work, 7);
      if (repeat >= 0) repeat += 8;
    }
    if (repeat < 0) return -1;
    repeat += 3;
    if (repeat > literals + distances - index) return Fail(work, InflateDamaged);
    memset(work->lengths + index, value, (size_t)repeat);
    index += repeat;
  }
  if (work->lengths[EndOfBlock] == 0) return Fail(work, InflateDamaged);

  left = BuildCode(&work->literals, work->lengths, (uint32_t)literals);
  if (!IsUsable(&work->literals, left)) return Fail(work, InflateDamaged);
  left = BuildCode(&work->distances, work->lengths + literals, (uint32_t)distances);
  return IsUsable(&work->distances, left) ? 0 : Fail(work, InflateDamaged);
}

static int CopyBlock(InflateWork* work) {
  switch (TakeBits(work, 2)) {
    case 0:
      return CopyStored(work);
    case 1:
      BuildFixedCodes(work);
      return CopyCompressed(work);
    case 2:
      return ReadDynamicCodes(work) < 0 ? -1 : CopyCompressed(work);
    default:
      return Fail(work, InflateDamaged);
  }
}

InflateResult Inflate(InflateWork* work, const InflatePorts* ports) {
  int last;
  work->ports = *ports;
  work->inputLeft = 0;
  work->bits = 0;
  work->bitCount = 0;
  work->filled = 0;
  work->wrapped = 0;
  do {
    last = TakeBits(work, 1);
    if (last < 0 || CopyBlock(work) < 0) return work->fault;
  } while (!last);
  return Flush(work) < 0 ? work->fault : InflateDone;
}
