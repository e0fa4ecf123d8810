#pragma once

#include <QString>

// Whether a graphics card is there to draw with; where the system doesn't tell, as on Windows and macOS, one is taken
// to be there. `devices` is the folder of the system's devices: on Linux a card with a driver that draws has a render
// node in it (the kernel's Direct Rendering Manager), NVIDIA's own driver may have its control device alone.
bool HasGraphicsCard(const QString& devices = QStringLiteral("/dev"));
