/* Inflate: undoes Deflate (RFC 1951) from one port to another in the fixed memory of an InflateWork.
   It reads no byte behind the end of the input, writes nothing that was not decoded, and ends on every input. */
#ifndef CORVANE_STUB_INFLATE_H
#define CORVANE_STUB_INFLATE_H

#include <stdint.h>

enum { InflateWindowSize = 32768, InflateMaxBits = 15, InflateFastBits = 9, InflateMaxSymbols = 288 };

typedef enum {
  InflateDone,    /* the last block ended; all output has been written */
  InflateDamaged, /* no Deflate stream, or cut off */
  InflateStopped  /* the write port refused */
} InflateResult;

typedef struct InflatePorts {
  void* context;
  /* Gives the next stretch of input and its length, 1 or more; 0 at the end of the input or when it can't be read. */
  uint32_t (*read)(void* context, const uint8_t** bytes);
  /* Takes 1 to InflateWindowSize bytes of output; 0 stops. */
  int (*write)(void* context, const uint8_t* bytes, uint32_t count);
} InflatePorts;

/* A canonical Huffman code: how many codes there are of each length, and the symbols in the order of their codes. */
typedef struct InflateCode {
  uint16_t count[InflateMaxBits + 1];
  uint16_t symbol[InflateMaxSymbols];
  uint16_t fast[1 << InflateFastBits]; /* by the next bits: symbol * 16 + length, or 0 for a longer code */
} InflateCode;

typedef struct InflateWork {
  InflatePorts ports;
  const uint8_t* input;
  uint32_t inputLeft;
  uint32_t bits; /* not yet used, the next one lowest */
  uint32_t bitCount;
  uint32_t filled; /* bytes of the window not yet written */
  int wrapped;     /* the whole window holds output */
  InflateResult fault;
  InflateCode literals;
  InflateCode distances;
  uint8_t lengths[InflateMaxSymbols + 32];
  uint8_t window[InflateWindowSize];
} InflateWork;

/* Decodes one stream. `work` needs no preparation. */
InflateResult Inflate(InflateWork* work, const InflatePorts* ports);

#endif
