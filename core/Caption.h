#pragma once

#include <QString>

// A text as a window's caption that shows it as it is: the window library takes "[*]" for a place of its own.
inline QString CaptionOf(QString text) {
  return text.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
}

// The caption of a button or of an entry of a menu as the program wrote it, where it has no mark for a key: some
// desktops put marks of their own into all of them.
inline QString WithoutKeyMarks(QString caption) {
  return caption.remove(u'&');
}
