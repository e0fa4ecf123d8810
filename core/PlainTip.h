// A tool tip that shows its text as it is: tips take markup, and guess by themselves what is markup.
#pragma once

#include <QString>

// "" stays "".
QString PlainTip(const QString& text);
