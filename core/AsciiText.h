#pragma once

#include <QByteArray>
#include <QString>

// Capitals and searches that know the ASCII letters only, and so are the same in every locale.

QString UpperAscii(const QString& text);
QByteArray UpperAscii(const QByteArray& text);

// Place of the first match in any case, from `from` on, counted from 0; -1 when there is none. An empty `what` is
// found at once.
qsizetype FindNoCase(const QString& text, const QString& what, qsizetype from = 0);
qsizetype FindNoCase(const QByteArray& text, const QByteArray& what, qsizetype from = 0);

// All matches of `what`, in any case, replaced from left to right, or only the first one. An empty `what` is found
// nowhere here.
enum class Matches { All, First };
QString ReplaceNoCase(const QString& text, const QString& what, const QString& with, Matches which = Matches::All);
QByteArray ReplaceNoCase(const QByteArray& text, const QByteArray& what, const QByteArray& with,
                         Matches which = Matches::All);

bool EqualsNoCase(const QString& a, const QString& b);

// Without the blanks (U+0020) at both ends. Tabs, line ends and no-break spaces stay.
QString TrimBlanks(const QString& text);
QByteArray TrimBlanks(const QByteArray& text);
