#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <functional>

#include "FileAccess.h"
#include "FileAttributes.h"

struct Program;

// What the archiver asks of its caller while it works; an empty function counts as the answer told.
struct ZipCallbacks {
  // A line of report, once for each file; its result isn't looked at.
  std::function<int32_t(const QByteArray& text)> ZipPrint;
  // Never called: nothing is encrypted.
  std::function<int32_t(QByteArray& buffer, const QByteArray& prompt, const QByteArray& name)> ZipPassword;
  // Never called: no comment is asked for.
  std::function<int32_t(QByteArray& buffer)> ZipComment;
  // Name and size in bytes of a file that comes next; 0 goes on, anything else ends the work.
  std::function<int32_t(const QByteArray& name, int64_t size)> ZipService;
};

// How to archive; the fields that aren't told are carried and have no effect.
struct ZipOptions {
  QByteArray Date;
  // Folder of the files and of the archive, with a separator at its end, as the system's own bytes.
  QByteArray szRootDir;
  QByteArray szTempDir;
  int32_t fTemp = 0;
  int32_t fSuffix = 0;
  int32_t fEncrypt = 0;
  // Not 0: hidden and system files are taken too.
  int32_t fSystem = 0;
  int32_t fVolume = 0;
  int32_t fExtra = 0;
  int32_t fNoDirEntries = 0;
  int32_t fExcludeDate = 0;
  int32_t fIncludeDate = 0;
  int32_t fVerbose = 0;
  int32_t fQuiet = 0;
  int32_t fCRLF_LF = 0;
  int32_t fLF_CRLF = 0;
  int32_t fJunkDir = 0;
  int32_t fGrow = 0;
  int32_t fForce = 0;
  int32_t fMove = 0;
  int32_t fDeleteEntries = 0;
  int32_t fUpdate = 0;
  int32_t fFreshen = 0;
  int32_t fJunkSFX = 0;
  int32_t fLatestTime = 0;
  int32_t fComment = 0;
  int32_t fOffsets = 0;
  int32_t fPrivilege = 0;
  int32_t fEncryption = 0;
  int32_t fRecurse = 0;
  int32_t fRepair = 0;
  // A character from '1' to '9'.
  char fLevel = '6';
};

// Bare file names as UTF-8, in the order of the entries; a name of one NUL is the end mark.
using ZipNames = QList<QByteArray>;

namespace ZipResult {
inline constexpr int32_t kGood = 0;
// A listed file can't be opened for reading, before anything is written or when its turn comes.
inline constexpr int32_t kCannotOpen = 18;
inline constexpr int32_t kFailed = 100;
}  // namespace ZipResult

// Makes ordinary zip archives: each entry compressed with Deflate, at the top level under its bare name, in the order
// of the list. A name beyond ASCII is UTF-8 and carries the flag that says so.
class ZipArchiver {
 public:
  // The first two must outlive the object. What is unfinished lies in `scratchFolder`, or in the system's folder for
  // such files where there is none of that name.
  ZipArchiver(const FileAccess& access, const FileAttributes& attributes, const QString& scratchFolder = QString())
      : access_(access), attributes_(attributes), scratchFolder_(scratchFolder) {}

  // These take their record over; 1 for well done.
  int32_t ZpInit(const ZipCallbacks& callbacks);
  int32_t ZpSetOptions(const ZipOptions& options);
  ZipOptions ZpGetOptions() const { return options_; }

  // Puts the first `count` names, or those before the end mark, into a new archive `zipName` in szRootDir, where
  // nothing else is ever written; a failure leaves what was there. The current folder isn't changed. A ZipResult.
  int32_t ZpArchive(int32_t count, const QByteArray& zipName, const ZipNames& names);

 private:
  const FileAccess& access_;
  const FileAttributes& attributes_;
  QString scratchFolder_;
  ZipCallbacks callbacks_;
  ZipOptions options_;
};

// Archives the named files of WorkPath into WorkPath's `card.zip` at the highest level, and lets window messages run
// once for each file. A ZipResult.
int32_t ZipWorkFiles(Program& program, const QStringList& names, int32_t count);

// The options of that archive.
ZipOptions WorkZipOptions(const Program& program);
