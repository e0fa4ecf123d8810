#include "MemberCompressor.h"

#include <libdeflate.h>

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <memory>
#include <new>

namespace {

// The coder wants a file and its result whole in memory.
constexpr qint64 kLargestMember = 256 << 20;
constexpr qint64 kMostBytesAhead = 64 << 20;
constexpr qsizetype kMostFilesAhead = 64;
// Pages and drawings, which compress well and are small, are worth the slowest of all levels; photos aren't.
constexpr int kHighestLevel = 9;
constexpr int kSlowestLevel = 12;
constexpr qsizetype kLargestSlowMember = 256 << 10;

struct FreeCompressor {
  void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};
using Compressor = std::unique_ptr<libdeflate_compressor, FreeCompressor>;

Compressor NewCompressor(int level) {
  return Compressor(libdeflate_alloc_compressor(level));
}

// "" on failure.
QByteArray Deflate(const QByteArray& bytes, libdeflate_compressor* compressor) {
  const auto size = std::size_t(bytes.size());
  QByteArray deflated(qsizetype(libdeflate_deflate_compress_bound(compressor, size)), Qt::Uninitialized);
  deflated.truncate(qsizetype(
      libdeflate_deflate_compress(compressor, bytes.constData(), size, deflated.data(), std::size_t(deflated.size()))));
  return deflated;
}

// The means of one thread.
class Coder {
 public:
  explicit Coder(int level) : level_(level), compressor_(NewCompressor(level)) {}

  Member Compress(const QString& path) {
    try {
      return CompressWhole(path);
    } catch (const std::bad_alloc&) {
      Member member;
      member.state = Member::State::TooLarge;
      return member;
    }
  }

 private:
  Member CompressWhole(const QString& path) {
    Member member;
    member.time = QFileInfo(path).lastModified();
    QFile file(path);
    if (!compressor_ || !file.open(QIODevice::ReadOnly)) return member;
    if (file.size() > kLargestMember) {
      member.state = Member::State::TooLarge;
      return member;
    }
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) return member;
    member.size = bytes.size();
    member.checksum = libdeflate_crc32(0, bytes.constData(), std::size_t(bytes.size()));
    member.deflated = Deflate(bytes, compressor_.get());
    if (level_ == kHighestLevel && bytes.size() <= kLargestSlowMember && member.deflated.size() < bytes.size() / 2) {
      if (!slow_) slow_ = NewCompressor(kSlowestLevel);
      const QByteArray again = slow_ ? Deflate(bytes, slow_.get()) : QByteArray();
      if (!again.isEmpty() && again.size() < member.deflated.size()) member.deflated = again;
    }
    if (!member.deflated.isEmpty()) member.state = Member::State::Ready;
    return member;
  }

  int level_;
  Compressor compressor_;
  Compressor slow_;  // made when it is needed
};

}  // namespace

Member CompressMember(const QString& path, int level) {
  return Coder(level).Compress(path);
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
  Coder coder(level_);
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return isOver_ || next_ == paths_.size() || MayBegin(); });
    if (isOver_ || next_ == paths_.size()) return;
    const qsizetype index = next_++;
    const qint64 size = QFileInfo(paths_[index]).size();
    bytesAhead_ += size;
    lock.unlock();
    Member member = coder.Compress(paths_[index]);
    lock.lock();
    bytesAhead_ += member.size - size;
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
