#include "ModZip.h"

#include <zip.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cstring>
#include <memory>

#include "ArchiveTarget.h"
#include "MemberCompressor.h"
#include "MessagePass.h"
#include "PathRules.h"
#include "Program.h"

namespace {

const QByteArray::value_type kEndMark = '\0';

// One file as the archive library reads it. Its turn comes with the first question about it: it is told of then, has to
// be there, and is handed over as the compressor has made it ready.
class FileSource {
 public:
  FileSource(const QString& path, const QByteArray& name, const ZipCallbacks& callbacks, MemberCompressor& members,
             qsizetype index, int level)
      : file_(path), name_(name), callbacks_(callbacks), members_(members), index_(index), level_(level) {
    zip_error_init(&error_);
    zip_stat_init(&status_);
  }
  ~FileSource() { zip_error_fini(&error_); }

  static zip_int64_t Serve(void* self, void* data, zip_uint64_t length, zip_source_cmd_t command) {
    auto* source = static_cast<FileSource*>(self);
    switch (command) {
      case ZIP_SOURCE_OPEN:
        return source->Open();
      case ZIP_SOURCE_READ:
        return source->Read(data, length);
      case ZIP_SOURCE_CLOSE:
        source->file_.close();
        source->member_ = Member();
        return 0;
      case ZIP_SOURCE_STAT:
        return source->Stat(data, length);
      case ZIP_SOURCE_ERROR:
        return zip_error_to_data(&source->error_, data, length);
      case ZIP_SOURCE_FREE:
        delete source;
        return 0;
      case ZIP_SOURCE_SUPPORTS:
        return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                                              ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, -1);
      default:
        return source->Fail(ZIP_ER_OPNOTSUPP);
    }
  }

 private:
  zip_int64_t Fail(int code) {
    zip_error_set(&error_, code, 0);
    return -1;
  }

  zip_int64_t TakeTurn() {
    if (callbacks_.ZipPrint) callbacks_.ZipPrint("  adding: " + name_);
    if (callbacks_.ZipService && callbacks_.ZipService(name_, file_.size()) != 0) return Fail(ZIP_ER_CANCELLED);
    member_ = members_.Take(index_);
    // Others may have been at work since the compressor read it.
    if (!file_.open(QIODevice::ReadOnly)) return Fail(ZIP_ER_OPEN);
    const QDateTime time = QFileInfo(file_).lastModified();
    if (member_.state == Member::State::Unreadable ||
        (member_.state == Member::State::Ready && (file_.size() != member_.size || time != member_.time)))
      member_ = CompressMember(file_.fileName(), level_);
    if (member_.state == Member::State::Unreadable) return Fail(ZIP_ER_READ);
    status_.mtime = static_cast<time_t>(time.toSecsSinceEpoch());
    status_.size = static_cast<zip_uint64_t>(file_.size());
    status_.valid = ZIP_STAT_SIZE | ZIP_STAT_MTIME;
    if (member_.state == Member::State::Ready) {
      file_.close();
      status_.size = static_cast<zip_uint64_t>(member_.size);
      status_.comp_size = static_cast<zip_uint64_t>(member_.deflated.size());
      status_.comp_method = ZIP_CM_DEFLATE;
      status_.crc = member_.checksum;
      status_.valid |= ZIP_STAT_COMP_SIZE | ZIP_STAT_COMP_METHOD | ZIP_STAT_CRC;
    }
    return 0;
  }

  zip_int64_t Open() {
    at_ = 0;
    return 0;
  }

  zip_int64_t Read(void* data, zip_uint64_t length) {
    if (file_.isOpen()) {
      const qint64 got = file_.read(static_cast<char*>(data), qint64(length));
      return got < 0 ? Fail(ZIP_ER_READ) : got;
    }
    const auto count = std::min(qsizetype(length), member_.deflated.size() - at_);
    std::memcpy(data, member_.deflated.constData() + at_, size_t(count));
    at_ += count;
    return count;
  }

  zip_int64_t Stat(void* data, zip_uint64_t length) {
    if (length < sizeof(zip_stat_t)) return Fail(ZIP_ER_INVAL);
    if (status_.valid == 0 && TakeTurn() < 0) return -1;
    *static_cast<zip_stat_t*>(data) = status_;
    return sizeof(zip_stat_t);
  }

  QFile file_;  // open only while it is too large to be compressed at once
  QByteArray name_;
  const ZipCallbacks& callbacks_;
  MemberCompressor& members_;
  qsizetype index_;
  int level_;
  Member member_;
  qsizetype at_ = 0;  // in the member's bytes
  zip_error_t error_;
  zip_stat_t status_;  // valid once its turn has come
};

bool AddFile(zip_t* archive, std::unique_ptr<FileSource> source, const QByteArray& name, int level) {
  zip_source_t* handle = zip_source_function(archive, &FileSource::Serve, source.get());
  if (!handle) return false;
  source.release();
  // The flag is for names that need it; some versions of the library would set it for all.
  const bool isAscii = std::all_of(name.begin(), name.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
  const zip_flags_t encoding = isAscii ? ZIP_FL_ENC_GUESS : ZIP_FL_ENC_UTF_8;
  const zip_int64_t index = zip_file_add(archive, name.constData(), handle, encoding);
  if (index < 0) {
    zip_source_free(handle);
    return false;
  }
  return zip_set_file_compression(archive, index, ZIP_CM_DEFLATE, level) == 0;
}

zip_t* NewArchive(const QString& path, const QString& scratchFolder) {
  zip_error_t error;
  zip_error_init(&error);
  zip_source_t* const target = NewArchiveTarget(path, scratchFolder, &error);
  zip_t* const archive = target ? zip_open_from_source(target, ZIP_CREATE | ZIP_TRUNCATE, &error) : nullptr;
  if (target && !archive) zip_source_free(target);
  zip_error_fini(&error);
  return archive;
}

}  // namespace

int32_t ZipArchiver::ZpInit(const ZipCallbacks& callbacks) {
  callbacks_ = callbacks;
  return 1;
}

int32_t ZipArchiver::ZpSetOptions(const ZipOptions& options) {
  options_ = options;
  return 1;
}

int32_t ZipArchiver::ZpArchive(int32_t count, const QByteArray& zipName, const ZipNames& names) {
  const QString root = QFile::decodeName(options_.szRootDir);
  QByteArrayList entries;
  QStringList paths;
  for (const QByteArray& name : names) {
    if (entries.size() >= count || name == QByteArray(1, kEndMark)) break;
    const QString path = root + QString::fromUtf8(name);
    if (!access_.CanBeRead(path)) return ZipResult::kCannotOpen;
    if (options_.fSystem == 0 && (attributes_.Get(path).value_or(AttributeNormal) & AttributeHidden)) continue;
    entries.append(name);
    paths.append(path);
  }

  const int level = options_.fLevel - '0';
  MemberCompressor members(paths, level);
  zip_t* archive = NewArchive(root + QString::fromUtf8(zipName), scratchFolder_);
  if (!archive) return ZipResult::kFailed;
  for (qsizetype i = 0; i < entries.size(); ++i) {
    auto source = std::make_unique<FileSource>(paths[i], entries[i], callbacks_, members, i, level);
    if (!AddFile(archive, std::move(source), entries[i], level)) {
      zip_discard(archive);
      return ZipResult::kFailed;
    }
  }
  if (zip_close(archive) != 0) {
    // Only the files themselves are opened here; the archive's own failures have other codes.
    const bool cannotOpen = zip_error_code_zip(zip_get_error(archive)) == ZIP_ER_OPEN;
    zip_discard(archive);
    return cannotOpen ? ZipResult::kCannotOpen : ZipResult::kFailed;
  }
  return ZipResult::kGood;
}

ZipOptions WorkZipOptions(const Program& program) {
  ZipOptions options;
  options.szRootDir = QFile::encodeName(program.project.WorkPath() + QDir::separator());
  options.fSystem = 1;
  // The character and not the number, and that is meant.
  options.fLevel = '9';
  return options;
}

int32_t ZipWorkFiles(Program& program, const QStringList& names, int32_t count) {
  ZipCallbacks callbacks;
  callbacks.ZipPrint = [](const QByteArray&) {
    RunMessagePass();
    return 0;
  };
  callbacks.ZipPassword = [](QByteArray&, const QByteArray&, const QByteArray&) { return 1; };
  callbacks.ZipComment = [](QByteArray& buffer) {
    buffer.clear();
    return 1;
  };
  callbacks.ZipService = [](const QByteArray&, int64_t) { return 0; };

  ZipArchiver archiver(program.platform.fileAccess, program.platform.fileAttributes, program.AppPath);
  archiver.ZpInit(callbacks);
  archiver.ZpSetOptions(WorkZipOptions(program));
  ZipNames zipNames;
  for (const QString& name : names) zipNames.append(name.toUtf8());
  zipNames.append(QByteArray(1, kEndMark));
  return archiver.ZpArchive(count, "card.zip", zipNames);
}
