// The archive's file, as libzip writes it: out of sight first, in its place when it is whole.
#pragma once

#include <zip.h>

#include <QString>

// A place for a new archive, with `scratchFolder` for what is unfinished; null when libzip has no memory. It is
// libzip's from then on. Whatever lies at `path` stays as it is until the archive is whole.
zip_source_t* NewArchiveTarget(const QString& path, const QString& scratchFolder, zip_error_t* error);
