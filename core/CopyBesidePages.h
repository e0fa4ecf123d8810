// How a picture that the user chose comes into the project.
#pragma once

#include <QString>

struct Program;

// Copies the file beside the pages and returns the name that it has there, whether the copy worked or not. The name is
// one that Windows can have; a file there of this name, or of one that differs from it only in case, is replaced.
QString CopyBesidePages(Program& program, const QString& path);
