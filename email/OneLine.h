#pragma once

#include <QString>

class QLineEdit;

// What is told on one line of a message or of the talk with a server. A line break in it would begin a line of the
// sender's own making, so a text ends at its first one, and at a NUL, which servers and the system take for an end.

// The text up to its first carriage return, line feed or NUL.
QString OneLine(const QString& text);

// Keeps to that in a box, whatever is pasted into it.
void KeepOneLine(QLineEdit* box);
