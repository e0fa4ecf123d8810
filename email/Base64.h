#pragma once

#include <QByteArray>
#include <QString>

// Base64 as mail carries it (RFC 2045), with this program's own way of breaking lines: a source of 77 bytes or more is
// broken after every 76 characters, a shorter one is a single line. There is no break behind the last line. Where that
// line is full, two NUL characters stand in the break's place, and that is meant.

enum class LineBreaks { None, Every76 };

QByteArray EncodeBase64(const QByteArray& source, LineBreaks breaks);

// How long the text of so many bytes gets at most.
qsizetype Base64Length(qsizetype bytes);

// Puts the text of the file at `path` behind another; nothing for one that can't be read.
void AppendBase64OfFile(QByteArray& text, const QString& path, LineBreaks breaks);

// Whole groups of four characters only; one outside the alphabet counts as 64. A "=" drops bytes only as the last
// character or the one before it.
QByteArray DecodeBase64(const QByteArray& text);
