// The encodings that a page may be in, by the labels that HTML knows for each (Encoding Standard).
#pragma once

#include <QByteArray>
#include <QString>

namespace PageEncodings {

// The encoding's name, as a browser's `document.characterSet` gives it; "" for a label that stands for none.
QString OfLabel(QStringView label);

// The bytes' characters. What is wrong or can't be read here becomes U+FFFD, or Windows-1252 as a whole where this
// system has no table for the encoding.
QString Decode(const QByteArray& bytes, const QString& name);

inline constexpr QLatin1String kUtf8("UTF-8");
inline constexpr QLatin1String kUtf16Le("UTF-16LE");
inline constexpr QLatin1String kUtf16Be("UTF-16BE");
inline constexpr QLatin1String kWindows1252("windows-1252");

}  // namespace PageEncodings
