#pragma once

#include <QByteArray>

// The page in the form in which a message carries it: pictures by content ids, quoted-printable as far as "=" goes.

// Every `SRC="` and the first `BACKGROUND="` lead to "cid:" from here on, whatever tag they stand in. Of all characters
// only "=" is quoted: bytes above 127 and blanks at the ends of lines stay as they are.
QByteArray EncodeHtmlBody(const QByteArray& html);

// Breaks a text of 76 characters or more into lines of 71 at most, the last one of 76 at most: behind a ">" with a
// plain line end, which so enters the page, else with a soft break behind a blank, or anywhere.
QByteArray WrapQuotedLines(const QByteArray& text);
