// Makes web-packs for the tests, sound ones and such as no archiver would write, and extracts them in memory.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

extern "C" {
#include "ArchiveReader.h"
}

using Bytes = std::vector<uint8_t>;

Bytes bytesOf(const std::string& text);

// Raw Deflate of zlib. `strategy` is one of zlib's, such as Z_FIXED.
Bytes deflated(const Bytes& data, int level, int strategy);

// Raw Deflate as packs are shipped with, by libdeflate.
Bytes deflatedAsShipped(const Bytes& data, int level = 9);

struct PackEntry {
  std::string name;
  Bytes data;
  uint16_t method = 8;
  uint16_t flags = 0;
  uint16_t date = 0x5A21;
  uint16_t time = 0x6000;
  Bytes localExtra;
  // In the directory alone.
  Bytes extra;
  std::string comment;
  // Nothing means what is right.
  int64_t checksum = -1;
  int64_t size = -1;
  int64_t compressedSize = -1;
  int64_t header = -1;
  std::string localName = "\x01";  // the same as `name`
};

struct PackForm {
  size_t prefix = 0;       // bytes in front of the archive
  size_t offsetsFrom = 0;  // added to every offset of the archive
  std::string comment = {};
  int64_t entries = -1;  // as the end record tells it; -1 is what is right
  int64_t directorySize = -1;
  int64_t directory = -1;
};

Bytes makePack(const std::vector<PackEntry>& entries, const PackForm& form = {});

// A folder in memory that ExtractArchive writes to.
struct MemoryFolder {
  struct File {
    Bytes data;
    bool utf8 = false;
    bool closed = false;
    uint16_t date = 0;
    uint16_t time = 0;
  };
  std::map<std::string, File> files;
  std::vector<std::string> created;  // in order, once for each time
  std::string unwritable;            // this name can't be created
  uint64_t room = UINT64_MAX;        // bytes that can be written
  bool closeFails = false;           // what was written doesn't get onto the disk in the end
  uint32_t largestRead = 0;

  ArchiveResult extract(const Bytes& pack);

  const Bytes* pack = nullptr;
  File* open = nullptr;
};
