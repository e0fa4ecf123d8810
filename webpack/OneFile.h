// A whole project as one HTML file, which any browser opens without anything beside it.
#pragma once

#include <QByteArray>
#include <QString>

struct Program;

// Writes all pages of WorkPath, page 1 first, with the pictures that they show and the links to their next pages. The
// page in view is taken from `inView` unless that is "", as its file may be older. Neither the project nor, on failure,
// the file at `path` is changed; false then.
bool SaveOneFile(Program& program, const QString& path, const QByteArray& inView);
