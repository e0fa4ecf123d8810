#pragma once

#include <QByteArray>
#include <QString>

// The program's built-in blocks of type CUSTOM: the pieces of the web-pack's stub, `STUB1`, `STUB2`, `STUB4`, `STUB5`,
// the icon images of 744 bytes by the names of PackIcons.h, and the 64 bytes of the icons' colour table, `ICO4TABLE`.
// The name counts exactly; a name that isn't there gives a null array.
QByteArray Resource(const QString& name);
