#pragma once

#include <QByteArray>

// What the text of a message has to hold to, so that no server takes a part of it for anything else. As no line gets a
// second dot on its way, a line of nothing but a dot would end the message, and what follows would be commands.

// Every line end of the text, LF, CR or both, as CR LF. `wrapped` has gone through WrapQuotedLines.
QByteArray WithWireLineEnds(QByteArray wrapped);

// Whether the text, of which each end counts as a line's, has line ends of CR LF only, no NUL, no line of nothing but a
// dot, and none that begins as the lines between the parts of a message do.
bool IsWireText(QByteArrayView text);
