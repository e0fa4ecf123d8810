#pragma once

#include <QString>

class ModFileOps;

// Whether an icon file can stand in a web-pack: one image of 32 by 32 pixels, 16 colours, exactly 766 bytes. 0 when it
// can; otherwise 1 to 7 and in `Message` what to tell the user. The file's attributes stay cleared.
int CheckIconFile(ModFileOps& Files, const QString& Path, QString& Message);
