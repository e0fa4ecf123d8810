// Compresses files for an archive ahead of their turn, on all cores.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

// A file as a Deflate stream (RFC 1951).
struct Member {
  // Too large for the memory: the file is to be compressed piece by piece, by somebody else.
  enum class State { Ready, TooLarge, Unreadable } state = State::Unreadable;
  QByteArray deflated;
  quint32 checksum = 0;  // CRC-32 of the file's bytes
  qint64 size = 0;       // of the file, in bytes, with its time as it was before it was read
  QDateTime time;
};

// Reads and compresses one file at a level from 1 to 9.
Member CompressMember(const QString& path, int level);

class MemberCompressor {
 public:
  // Begins with the first file at once. It stays so many files and bytes ahead that memory is bounded.
  MemberCompressor(const QStringList& paths, int level);
  // Gives up what nobody has taken.
  ~MemberCompressor();
  MemberCompressor(const MemberCompressor&) = delete;
  MemberCompressor& operator=(const MemberCompressor&) = delete;

  // The file of that place in the list, once each, in the list's order. Waits for it.
  Member Take(qsizetype index);

 private:
  void Work();
  bool MayBegin() const;

  const QStringList paths_;
  const int level_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::map<qsizetype, Member> ready_;
  qsizetype next_ = 0;     // nobody has begun with it yet
  qsizetype wanted_ = 0;   // the next one that will be taken
  qint64 bytesAhead_ = 0;  // of files that have been begun with and not taken
  bool isOver_ = false;
  std::vector<std::thread> workers_;
};
