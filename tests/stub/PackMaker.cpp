#include "PackMaker.h"

#include <libdeflate.h>
#include <zlib.h>

#include <cassert>
#include <cstring>
#include <memory>

Bytes bytesOf(const std::string& text) {
  return Bytes(text.begin(), text.end());
}

Bytes deflated(const Bytes& data, int level, int strategy) {
  z_stream stream{};
  int result = deflateInit2(&stream, level, Z_DEFLATED, -MAX_WBITS, 9, strategy);
  assert(result == Z_OK);
  Bytes out(data.size() * 2 + 1000);  // no strategy needs more
  stream.next_in = const_cast<Bytef*>(data.data());
  stream.avail_in = uInt(data.size());
  stream.next_out = out.data();
  stream.avail_out = uInt(out.size());
  result = deflate(&stream, Z_FINISH);
  assert(result == Z_STREAM_END);
  (void)result;
  out.resize(stream.total_out);
  deflateEnd(&stream);
  return out;
}

Bytes deflatedAsShipped(const Bytes& data, int level) {
  const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
      libdeflate_alloc_compressor(level), libdeflate_free_compressor);
  Bytes out(libdeflate_deflate_compress_bound(compressor.get(), data.size()));
  out.resize(libdeflate_deflate_compress(compressor.get(), data.data(), data.size(), out.data(), out.size()));
  assert(!out.empty());
  return out;
}

namespace {

class Writer {
 public:
  explicit Writer(Bytes& out) : out_(out) {}
  Writer& word(uint64_t value) { return little(value, 2); }
  Writer& dword(uint64_t value) { return little(value, 4); }
  Writer& text(const std::string& value) {
    out_.insert(out_.end(), value.begin(), value.end());
    return *this;
  }
  Writer& bytes(const Bytes& value) {
    out_.insert(out_.end(), value.begin(), value.end());
    return *this;
  }

 private:
  Writer& little(uint64_t value, int count) {
    for (; count > 0; count--, value >>= 8) out_.push_back(uint8_t(value));
    return *this;
  }
  Bytes& out_;
};

uint64_t either(int64_t told, uint64_t right) {
  return told < 0 ? right : uint64_t(told);
}

}  // namespace

Bytes makePack(const std::vector<PackEntry>& entries, const PackForm& form) {
  Bytes out(form.prefix, 0xEE);
  Bytes directory;
  for (const PackEntry& entry : entries) {
    Bytes packed = entry.method == 8 ? deflated(entry.data, 9, Z_DEFAULT_STRATEGY) : entry.data;
    const std::string& localName = entry.localName == "\x01" ? entry.name : entry.localName;
    uint64_t checksum = either(entry.checksum, crc32(0, entry.data.data(), uInt(entry.data.size())));
    uint64_t packedSize = either(entry.compressedSize, packed.size());
    uint64_t size = either(entry.size, entry.data.size());
    uint64_t header = either(entry.header, out.size() - form.prefix + form.offsetsFrom);
    Writer(out).dword(0x04034B50).word(20).word(entry.flags).word(entry.method).word(entry.time).word(entry.date);
    Writer(out).dword(checksum).dword(packedSize).dword(size).word(localName.size()).word(entry.localExtra.size());
    Writer(out).text(localName).bytes(entry.localExtra).bytes(packed);
    Writer(directory).dword(0x02014B50).word(20).word(20).word(entry.flags).word(entry.method).word(entry.time);
    Writer(directory).word(entry.date).dword(checksum).dword(packedSize).dword(size).word(entry.name.size());
    Writer(directory).word(entry.extra.size()).word(entry.comment.size()).word(0).word(0).dword(0).dword(header);
    Writer(directory).text(entry.name).bytes(entry.extra).text(entry.comment);
  }
  uint64_t start = either(form.directory, out.size() - form.prefix + form.offsetsFrom);
  uint64_t count = either(form.entries, entries.size());
  Writer(out).bytes(directory).dword(0x06054B50).word(0).word(0).word(count).word(count);
  Writer(out).dword(either(form.directorySize, directory.size())).dword(start);
  Writer(out).word(form.comment.size()).text(form.comment);
  return out;
}

static uint32_t readAt(void* context, uint64_t offset, void* bytes, uint32_t count) {
  auto* folder = static_cast<MemoryFolder*>(context);
  if (offset >= folder->pack->size()) return 0;
  folder->largestRead = std::max(folder->largestRead, count);
  uint32_t left = uint32_t(std::min<uint64_t>(count, folder->pack->size() - offset));
  memcpy(bytes, folder->pack->data() + offset, left);
  return left;
}

static int createFile(void* context, const char* name, int nameIsUtf8) {
  auto* folder = static_cast<MemoryFolder*>(context);
  assert(!folder->open);
  if (folder->unwritable == name) return 0;
  folder->created.push_back(name);
  folder->open = &(folder->files[name] = {});
  folder->open->utf8 = nameIsUtf8;
  return 1;
}

static int writeFile(void* context, const void* bytes, uint32_t count) {
  auto* folder = static_cast<MemoryFolder*>(context);
  assert(folder->open && count > 0);
  if (count > folder->room) return 0;
  folder->room -= count;
  auto* from = static_cast<const uint8_t*>(bytes);
  folder->open->data.insert(folder->open->data.end(), from, from + count);
  return 1;
}

static int closeFile(void* context, uint16_t dosDate, uint16_t dosTime) {
  auto* folder = static_cast<MemoryFolder*>(context);
  assert(folder->open);
  folder->open->closed = true;
  folder->open->date = dosDate;
  folder->open->time = dosTime;
  folder->open = nullptr;
  return !folder->closeFails;
}

ArchiveResult MemoryFolder::extract(const Bytes& bytes) {
  // What the last use left there must not matter, so the memory is filled with something else than zeros.
  static const auto work = std::make_unique<ArchiveWork>();
  memset(work.get(), 0xA5, sizeof(ArchiveWork));
  // A copy of the right size on the heap, so that a read behind its end is found by the sanitizer.
  Bytes own(bytes);
  pack = &own;
  ArchiveIo io{this, readAt, createFile, writeFile, closeFile};
  ArchiveResult result = ExtractArchive(work.get(), &io, own.size());
  pack = nullptr;
  assert(!open);
  return result;
}
