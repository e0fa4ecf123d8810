#include "ArchiveTarget.h"

#include <cerrno>
#include <memory>

#include "ScratchFile.h"

namespace {

class ArchiveTarget {
 public:
  ArchiveTarget(const QString& path, const QString& scratchFolder) : path_(path), scratchFolder_(scratchFolder) {
    zip_error_init(&error_);
  }
  ~ArchiveTarget() { zip_error_fini(&error_); }

  static zip_int64_t Serve(void* self, void* data, zip_uint64_t length, zip_source_cmd_t command) {
    auto* const target = static_cast<ArchiveTarget*>(self);
    switch (command) {
      case ZIP_SOURCE_SUPPORTS:
        return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT,
                                              ZIP_SOURCE_ERROR, ZIP_SOURCE_FREE, ZIP_SOURCE_SEEK, ZIP_SOURCE_TELL,
                                              ZIP_SOURCE_BEGIN_WRITE, ZIP_SOURCE_COMMIT_WRITE,
                                              ZIP_SOURCE_ROLLBACK_WRITE, ZIP_SOURCE_WRITE, ZIP_SOURCE_SEEK_WRITE,
                                              ZIP_SOURCE_TELL_WRITE, ZIP_SOURCE_REMOVE, -1);
      case ZIP_SOURCE_STAT:
        return target->Fail(ZIP_ER_READ, ENOENT);  // a new archive each time
      case ZIP_SOURCE_BEGIN_WRITE:
        target->scratch_ = std::make_unique<ScratchFile>(target->scratchFolder_);
        return target->scratch_->open() ? 0 : target->Fail(ZIP_ER_TMPOPEN);
      case ZIP_SOURCE_WRITE: {
        const qint64 written = target->scratch_->write(static_cast<const char*>(data), qint64(length));
        return written < 0 ? target->Fail(ZIP_ER_WRITE) : written;
      }
      case ZIP_SOURCE_TELL_WRITE:
        return target->scratch_->pos();
      case ZIP_SOURCE_SEEK_WRITE: {
        const zip_int64_t at = zip_source_seek_compute_offset(static_cast<zip_uint64_t>(target->scratch_->pos()),
                                                              static_cast<zip_uint64_t>(target->scratch_->size()), data,
                                                              length, &target->error_);
        if (at < 0) return -1;
        return target->scratch_->seek(at) ? 0 : target->Fail(ZIP_ER_SEEK);
      }
      case ZIP_SOURCE_COMMIT_WRITE:
        return target->scratch_->MoveTo(target->path_) ? 0 : target->Fail(ZIP_ER_RENAME);
      case ZIP_SOURCE_ROLLBACK_WRITE:
        target->scratch_.reset();
        return 0;
      case ZIP_SOURCE_REMOVE:
        QFile::remove(target->path_);
        return 0;
      case ZIP_SOURCE_ERROR:
        return zip_error_to_data(&target->error_, data, length);
      case ZIP_SOURCE_FREE:
        delete target;
        return 0;
      default:
        return target->Fail(ZIP_ER_OPNOTSUPP);
    }
  }

 private:
  zip_int64_t Fail(int code, int system = 0) {
    zip_error_set(&error_, code, system);
    return -1;
  }

  QString path_;
  QString scratchFolder_;
  std::unique_ptr<ScratchFile> scratch_;  // from the first byte on
  zip_error_t error_;
};

}  // namespace

zip_source_t* NewArchiveTarget(const QString& path, const QString& scratchFolder, zip_error_t* error) {
  auto target = std::make_unique<ArchiveTarget>(path, scratchFolder);
  zip_source_t* const source = zip_source_function_create(&ArchiveTarget::Serve, target.get(), error);
  if (source) target.release();
  return source;
}
