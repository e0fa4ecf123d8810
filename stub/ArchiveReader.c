#include "ArchiveReader.h"

#include <string.h>

#include "EntryName.h"

enum {
  EndSignature = 0x06054B50,
  EndSize = 22,
  DirectorySignature = 0x02014B50,
  DirectoryHeaderSize = 46,
  LocalSignature = 0x04034B50,
  LocalHeaderSize = 30,
  FlagEncrypted = 1 << 0,
  FlagUtf8 = 1 << 11,
  MethodStored = 0,
  MethodDeflate = 8,
  MaxDeflateRatio = 1032 /* no Deflate stream grows more than that */
};

typedef struct Entry {
  uint32_t headerSize; /* of its header in the directory, with name, extra field and comment */
  uint32_t flags;
  uint32_t method;
  uint16_t time;
  uint16_t date;
  uint32_t checksum;
  uint32_t compressedSize;
  uint32_t size;
  uint32_t header; /* the local header, from the archive's start */
  uint32_t data;   /* the compressed bytes, from the archive's start */
  uint32_t nameLength;
  char name[ArchiveMaxName];
} Entry;

static uint16_t Word(const uint8_t* bytes) {
  return (uint16_t)(bytes[0] | bytes[1] << 8);
}

static uint32_t Long(const uint8_t* bytes) {
  return Word(bytes) | (uint32_t)Word(bytes + 2) << 16;
}

static int ReadExactly(ArchiveWork* work, uint64_t offset, void* bytes, uint32_t count) {
  return work->io.readAt(work->io.context, offset, bytes, count) == count;
}

/* Takes the record at `offset` when its directory lies right in front of it, and its comment ends with the file or the
   archive begins where the stub ends: then whatever follows, a signature say, isn't the archive's. */
static int TakeEndRecord(ArchiveWork* work, const uint8_t* record, uint64_t offset, uint64_t size) {
  uint64_t archiveSize, end = offset + EndSize + Word(record + 20);
  if (Long(record) != EndSignature || end > size) return 0;
  work->entries = Word(record + 10);
  work->directorySize = Long(record + 12);
  work->directory = Long(record + 16);
  archiveSize = (uint64_t)work->directory + work->directorySize;
  if (Word(record + 4) != 0 || Word(record + 6) != 0 || Word(record + 8) != work->entries || archiveSize > offset)
    return 0;
  work->prefix = offset - archiveSize;
  return end == size || work->prefix == ArchiveStubSize;
}

/* The last record that can be taken, by a search through the file from its end. */
static int FindEndRecord(ArchiveWork* work, uint64_t size) {
  uint64_t end = size;
  while (end >= EndSize) {
    uint64_t start = end > ArchiveBufferSize ? end - ArchiveBufferSize : 0;
    uint32_t index = (uint32_t)(end - start) - EndSize + 1;
    if (!ReadExactly(work, start, work->buffer, (uint32_t)(end - start))) return 0;
    while (index-- > 0)
      if (TakeEndRecord(work, work->buffer + index, start + index, size)) return 1;
    if (start == 0) break;
    end = start + EndSize - 1; /* a record may lie across the edge */
  }
  return 0;
}

/* The local header repeats the name and alone tells where the data begin. Its sizes are not looked at: a writer that
   did not know them leaves them out there. */
static int ReadLocalHeader(ArchiveWork* work, Entry* entry) {
  uint8_t header[LocalHeaderSize];
  uint64_t data = (uint64_t)entry->header + LocalHeaderSize + entry->nameLength;
  if (data > work->directory || !ReadExactly(work, work->prefix + entry->header, header, LocalHeaderSize)) return 0;
  if (Long(header) != LocalSignature || ((Word(header + 6) ^ entry->flags) & FlagEncrypted) != 0 ||
      Word(header + 8) != entry->method || Word(header + 26) != entry->nameLength)
    return 0;
  if (!ReadExactly(work, work->prefix + entry->header + LocalHeaderSize, work->localName, entry->nameLength) ||
      memcmp(work->localName, entry->name, entry->nameLength) != 0)
    return 0;
  data += Word(header + 28);
  if (data + entry->compressedSize > work->directory) return 0;
  entry->data = (uint32_t)data;
  return 1;
}

/* Reads and checks the entry whose directory header begins `offset` bytes into the directory. */
static int ReadEntry(ArchiveWork* work, uint32_t offset, Entry* entry) {
  uint8_t header[DirectoryHeaderSize];
  uint64_t position = work->prefix + work->directory + offset;
  uint32_t left = work->directorySize - offset;
  if (left < DirectoryHeaderSize || !ReadExactly(work, position, header, DirectoryHeaderSize)) return 0;
  if (Long(header) != DirectorySignature || Word(header + 34) != 0) return 0;
  entry->flags = Word(header + 8);
  entry->method = Word(header + 10);
  entry->time = Word(header + 12);
  entry->date = Word(header + 14);
  entry->checksum = Long(header + 16);
  entry->compressedSize = Long(header + 20);
  entry->size = Long(header + 24);
  entry->nameLength = Word(header + 28);
  entry->headerSize = DirectoryHeaderSize + entry->nameLength + Word(header + 30) + Word(header + 32);
  entry->header = Long(header + 42);
  if (entry->headerSize > left || entry->nameLength == 0 || entry->nameLength > ArchiveMaxName) return 0;
  if (!ReadExactly(work, position + DirectoryHeaderSize, entry->name, entry->nameLength)) return 0;
  if (!MakePlainFileName(entry->name, entry->nameLength, (entry->flags & FlagUtf8) != 0, work->plainName)) return 0;
  if ((entry->flags & FlagEncrypted) == 0) {
    if (entry->method == MethodStored
            ? entry->size != entry->compressedSize
            : entry->method != MethodDeflate || entry->size > (uint64_t)entry->compressedSize * MaxDeflateRatio)
      return 0;
  }
  return ReadLocalHeader(work, entry);
}

static void SiftDown(ArchiveRange* ranges, uint32_t root, uint32_t count) {
  ArchiveRange moved = ranges[root];
  for (;;) {
    uint32_t child = root * 2 + 1;
    if (child >= count) break;
    if (child + 1 < count && ranges[child].start < ranges[child + 1].start) child++;
    if (ranges[child].start <= moved.start) break;
    ranges[root] = ranges[child];
    root = child;
  }
  ranges[root] = moved;
}

/* Heapsort: its time stays within bounds for any order of 65535 ranges, and it needs no further memory. */
static void SortRanges(ArchiveRange* ranges, uint32_t count) {
  uint32_t index;
  for (index = count / 2; index-- > 0;) SiftDown(ranges, index, count);
  for (index = count; index-- > 1;) {
    ArchiveRange last = ranges[index];
    ranges[index] = ranges[0];
    ranges[0] = last;
    SiftDown(ranges, 0, index);
  }
}

static int CheckDirectory(ArchiveWork* work) {
  Entry entry;
  uint32_t index, offset = 0;
  for (index = 0; index < work->entries; index++) {
    if (!ReadEntry(work, offset, &entry)) return 0;
    work->ranges[index].start = entry.header;
    work->ranges[index].end = entry.data + entry.compressedSize;
    offset += entry.headerSize;
  }
  if (offset != work->directorySize) return 0;
  SortRanges(work->ranges, work->entries);
  for (index = 1; index < work->entries; index++)
    if (work->ranges[index].start < work->ranges[index - 1].end) return 0;
  return 1;
}

/* CRC-32, a byte a step. */
static void MakeChecksumTable(uint32_t* table) {
  uint32_t byte, bit;
  for (byte = 0; byte < 256; byte++) {
    uint32_t sum = byte;
    for (bit = 0; bit < 8; bit++) sum = sum & 1 ? sum >> 1 ^ 0xEDB88320 : sum >> 1;
    table[byte] = sum;
  }
}

static uint32_t Checksum(const uint32_t* table, uint32_t sum, const uint8_t* bytes, uint32_t count) {
  while (count-- > 0) sum = sum >> 8 ^ table[(sum ^ *bytes++) & 0xFF];
  return sum;
}

static uint32_t ReadCompressed(void* context, const uint8_t** bytes) {
  ArchiveWork* work = context;
  uint32_t count = work->compressedLeft < ArchiveBufferSize ? work->compressedLeft : ArchiveBufferSize;
  if (count == 0 || !ReadExactly(work, work->position, work->buffer, count)) return 0;
  work->position += count;
  work->compressedLeft -= count;
  *bytes = work->buffer;
  return count;
}

static int WriteExtracted(void* context, const uint8_t* bytes, uint32_t count) {
  ArchiveWork* work = context;
  if (count > work->sizeLeft) {
    work->fault = ArchiveDamaged;
    return 0;
  }
  if (!work->io.write(work->io.context, bytes, count)) {
    work->fault = ArchiveNotWritten;
    return 0;
  }
  work->sizeLeft -= count;
  work->checksum = Checksum(work->checksumTable, work->checksum, bytes, count);
  return 1;
}

static int CopyStored(ArchiveWork* work) {
  const uint8_t* bytes;
  uint32_t count;
  while ((count = ReadCompressed(work, &bytes)) != 0)
    if (!WriteExtracted(work, bytes, count)) return 0;
  return 1;
}

static ArchiveResult ExtractEntry(ArchiveWork* work, const Entry* entry) {
  int whole;
  if (!work->io.create(work->io.context, work->plainName, (entry->flags & FlagUtf8) != 0)) return ArchiveNotWritten;
  work->position = work->prefix + entry->data;
  work->compressedLeft = entry->compressedSize;
  work->sizeLeft = entry->size;
  work->checksum = 0xFFFFFFFF;
  work->fault = ArchiveDamaged;
  if (entry->method == MethodStored) {
    whole = CopyStored(work);
  } else {
    InflatePorts ports;
    ports.context = work;
    ports.read = ReadCompressed;
    ports.write = WriteExtracted;
    whole = Inflate(&work->inflate, &ports) == InflateDone;
  }
  if (!work->io.close(work->io.context, entry->date, entry->time) && whole) return ArchiveNotWritten;
  if (!whole) return work->fault;
  return work->sizeLeft == 0 && ~work->checksum == entry->checksum ? ArchiveComplete : ArchiveDamaged;
}

ArchiveResult ExtractArchive(ArchiveWork* work, const ArchiveIo* io, uint64_t size) {
  ArchiveResult result;
  Entry entry;
  uint32_t index, offset = 0;
  work->io = *io;
  MakeChecksumTable(work->checksumTable);
  if (!FindEndRecord(work, size) || !CheckDirectory(work)) return ArchiveDamaged;
  result = work->entries != 0 ? ArchiveComplete : ArchiveWarnings;
  for (index = 0; index < work->entries; index++) {
    if (!ReadEntry(work, offset, &entry)) return ArchiveDamaged;
    offset += entry.headerSize;
    if ((entry.flags & FlagEncrypted) != 0) {
      result = ArchiveWarnings;
    } else {
      ArchiveResult one = ExtractEntry(work, &entry);
      if (one != ArchiveComplete) return one;
    }
  }
  return result;
}
