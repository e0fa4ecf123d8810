#pragma once

#include <QString>

class QLineEdit;

// What is told on one line of a message or of the talk with a server. A line break in it would begin a line of the
// sender's own making, so a text ends at its first one.

// The text up to its first carriage return or line feed.
QString OneLine(const QString& text);

// Keeps to that in a box, whatever is pasted into it.
void KeepOneLine(QLineEdit* box);
