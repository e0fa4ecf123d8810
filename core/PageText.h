#pragma once

#include <QByteArray>
#include <QString>

// How text meets the bytes of a page file, so that nothing is ever lost.

// The bytes for typed text: each character above U+007F as a decimal reference, "&#225;", one for each code point;
// everything else as it stands, markup too.
QByteArray EncodePageText(const QString& text);

// The text of a name found in a page file's bytes: UTF-8 where that is valid, else Windows-1252.
QString DecodePageName(const QByteArray& bytes);
