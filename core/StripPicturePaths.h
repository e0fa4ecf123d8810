#pragma once

#include <QByteArray>
#include <QString>

#include "ModFileOps.h"

// The plain-text scan that keeps a page portable. The value of SRC in each IMG and of BACKGROUND in BODY becomes a bare
// file name in double quotes; nothing else of the page changes.

// Returns the new text. Pictures gets the names in order of appearance, repeats included, with "*" between them; a list
// of one empty name is "*".
QByteArray StripPicturePaths(const QByteArray& Text, QByteArray& Pictures);

// The same for the file at `Path`. A file that is missing or can't be read gives "" and leaves Pictures as it was.
QByteArray StripPicturePathsOfFile(ModFileOps& Files, const QString& Path, QByteArray& Pictures);
