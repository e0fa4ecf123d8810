// Throwing away what is the user's own: it goes where the desktop keeps such things, and is deleted where there is no
// such place. What the program made for itself is deleted by ModFileOps.
#pragma once

#include <QString>

struct Program;

void DiscardFile(Program& program, const QString& path);

// With all that is in it; ends silently at the first thing that can't be removed.
void DiscardFolder(Program& program, const QString& path);
