#pragma once

#include <QString>
#include <functional>

class QIODevice;

// Writes a file that is whole or isn't there: where `write` gives false, or the disk didn't take all of it, what has
// come of the file is removed. False then, and where the file can't be opened. An old file of that name is written
// over.
bool WriteWhole(const QString& path, const std::function<bool(QIODevice&)>& write);
