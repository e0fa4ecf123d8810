#include "MemberCompressor.h"

#include <libdeflate.h>

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <memory>

namespace {

// The coder wants a file and its result whole in memory.
constexpr qint64 kLargestMember = 256 << 20;
constexpr qint64 kMostBytesAhead = 64 << 20;
constexpr qsizetype kMostFilesAhead = 64;

struct FreeCompressor {
  void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};
using Compressor = std::unique_ptr<libdeflate_compressor, FreeCompressor>;

Member Compress(const QString& path, libdeflate_compressor* compressor) {
  Member member;
  const QFileInfo info(path);
  member.time = info.lastModified();
  QFile file(path);
  if (!compressor || !file.open(QIODevice::ReadOnly)) return member;
  if (file.size() > kLargestMember) {
    member.state = Member::State::TooLarge;
    return member;
  }
  const QByteArray bytes = file.readAll();
  if (file.error() != QFileDevice::NoError) return member;
  const auto size = std::size_t(bytes.size());
  member.size = bytes.size();
  member.checksum = libdeflate_crc32(0, bytes.constData(), size);
  member.deflated.resize(qsizetype(libdeflate_deflate_compress_bound(compressor, size)));
  const std::size_t length = libdeflate_deflate_compress(compressor, bytes.constData(), size, member.deflated.data(),
                                                         std::size_t(member.deflated.size()));
  if (length == 0) return member;
  member.deflated.truncate(qsizetype(length));
  member.state = Member::State::Ready;
  return member;
}

}  // namespace

Member CompressMember(const QString& path, int level) {
  const Compressor compressor(libdeflate_alloc_compressor(level));
  return Compress(path, compressor.get());
}

MemberCompressor::MemberCompressor(const QStringList& paths, int level) : paths_(paths), level_(level) {
  const auto cores = qsizetype(std::max(1u, std::thread::hardware_concurrency()));
  const qsizetype workers = std::min({cores, paths_.size(), qsizetype(8)});
  for (qsizetype i = 0; i < workers; ++i) workers_.emplace_back([this] { Work(); });
}

MemberCompressor::~MemberCompressor() {
  {
    const std::lock_guard lock(mutex_);
    isOver_ = true;
  }
  changed_.notify_all();
  for (std::thread& worker : workers_) worker.join();
}

// The one that is waited for may always be begun with.
bool MemberCompressor::MayBegin() const {
  return next_ == wanted_ || (next_ < wanted_ + kMostFilesAhead && bytesAhead_ < kMostBytesAhead);
}

void MemberCompressor::Work() {
  const Compressor compressor(libdeflate_alloc_compressor(level_));
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return isOver_ || next_ == paths_.size() || MayBegin(); });
    if (isOver_ || next_ == paths_.size()) return;
    const qsizetype index = next_++;
    lock.unlock();
    Member member = Compress(paths_[index], compressor.get());
    lock.lock();
    bytesAhead_ += member.size;
    ready_.emplace(index, std::move(member));
    changed_.notify_all();
  }
}

Member MemberCompressor::Take(qsizetype index) {
  std::unique_lock lock(mutex_);
  wanted_ = index;
  changed_.notify_all();
  changed_.wait(lock, [&] { return ready_.contains(index); });
  Member member = std::move(ready_.extract(index).mapped());
  bytesAhead_ -= member.size;
  wanted_ = index + 1;
  changed_.notify_all();
  return member;
}
