// Tries a web-pack where it can't be started: what its stub does at the recipient's is done here by the stub's own
// reader.
#pragma once

#include <QString>

// Reads every file out of the pack and compares it with that in `workPath`, looks for page 1 among them, and follows
// the links to the next pages. "" when all is well, else the name of what the recipient won't have as it is here: a
// file's, or the pack's own where it opens nothing at all.
QString CheckPack(const QString& packPath, const QString& workPath);
