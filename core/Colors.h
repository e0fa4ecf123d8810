#pragma once

#include <QString>

// The two forms of a colour: the text "#RRGGBB" and the number 0x00BBGGRR, red in the low byte. A negative number is a
// system colour.

// In capitals; "#000000" for every negative number, the low 24 bits of any other.
QString ColorToHtml(qint32 Color);

// The last 6 characters count, with zeros before them where there are fewer; a leading "#" is dropped. 0 for a text of
// fewer than 2 characters and for one that isn't hexadecimal.
qint32 HtmlToColor(const QString& Text);
