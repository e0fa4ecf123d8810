#pragma once

#include <QString>
#include <optional>

// How the program reads and rounds numbers; the same in every locale.

// To the nearest whole number, halves to the even one.
double RoundEven(double value);

// True for a number with blanks around it, a sign, digits, one ".", and an exponent after E or D, each as far as there
// is one; at least one digit stands before the exponent.
bool IsNumeric(const QString& text);

// The value of a numeric text, infinite when it is beyond a double; nothing for any other text.
std::optional<double> NumericValue(const QString& text);

// The value rounded by RoundEven; nothing when the text isn't numeric or the value doesn't fit.
std::optional<qint16> ToInteger16(const QString& text);
std::optional<qint32> ToInteger32(const QString& text);
