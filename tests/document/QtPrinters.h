// Readable Qt values in the messages of a failed test.
#pragma once

#include <gtest/gtest.h>

#include <QString>
#include <QStringList>
#include <ostream>

inline void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QStringList& list, std::ostream* out) {
  *out << '[' << list.join("; ").toStdString() << ']';
}
