#pragma once

#include <QByteArray>
#include <QString>

// Typed text as 8-bit text and back, in Windows-1252. The five bytes that this code page leaves empty stand for the
// control characters of the same number, so every byte has a character and comes back as it was.

// "?" for each character outside the code page, one for each code point.
QByteArray ToCodePage(const QString& text);

QString FromCodePage(const QByteArray& bytes);
