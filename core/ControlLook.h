#pragma once

#include <QString>

class QWidget;

// Edges of controls and windows. The bits of the looks are "raised" 256, "sunken" 512, "framed" 257 and 769 for every
// other name; a widget keeps what it was given, and a further look adds to it.

// Adds the look's bits to the widget and shows them: bit 1 as a thin double edge, 512 as a sunken and 256 as a raised
// one. A QFrame shows it as its own frame, any other widget through a frame laid over it.
void SetControlLook(QWidget* Window, const QString& Look);

// Sum of the bits given so far; 0 for a widget without a look.
int ControlLookBits(const QWidget* Window);
