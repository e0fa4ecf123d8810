#include "PackedFiles.h"

#include <zip.h>

#include "TestPlatform.h"

QList<PackedFile> FilesInPack(const QString& pack) {
  QList<PackedFile> files;
  const QByteArray bytes = FileBytes(pack).mid(0x13000);
  zip_source_t* const source = zip_source_buffer_create(bytes.constData(), zip_uint64_t(bytes.size()), 0, nullptr);
  zip_t* const archive = source ? zip_open_from_source(source, ZIP_RDONLY | ZIP_CHECKCONS, nullptr) : nullptr;
  if (!archive) {
    zip_source_free(source);
    return files;
  }
  for (zip_int64_t index = 0; index < zip_get_num_entries(archive, 0); ++index) {
    zip_stat_t stat;
    if (zip_stat_index(archive, zip_uint64_t(index), 0, &stat) != 0) break;
    QByteArray content(qsizetype(stat.size), Qt::Uninitialized);
    zip_file_t* const file = zip_fopen_index(archive, zip_uint64_t(index), 0);
    if (!file || zip_fread(file, content.data(), stat.size) != zip_int64_t(stat.size)) content = "<unreadable>";
    if (file) zip_fclose(file);
    files.append({QString::fromUtf8(stat.name), content});
  }
  zip_discard(archive);
  return files;
}
