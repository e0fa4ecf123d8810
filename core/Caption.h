#pragma once

#include <QString>

// A text as a window's caption that shows it as it is: the window library takes "[*]" for a place of its own.
inline QString CaptionOf(QString text) {
  return text.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
}
