#include "Numbers.h"

#include <cmath>
#include <limits>

#include "AsciiText.h"

namespace {

// The text in the form that QString::toDouble takes; "" when it isn't numeric.
QByteArray PlainNumber(const QString& text) {
  const QByteArray number = TrimBlanks(text).toLatin1();
  qsizetype at = 0;
  const auto more = [&] { return at < number.size(); };
  const auto skipSign = [&] {
    if (more() && (number.at(at) == '+' || number.at(at) == '-')) ++at;
  };
  const auto countDigits = [&] {
    const qsizetype first = at;
    while (more() && number.at(at) >= '0' && number.at(at) <= '9') ++at;
    return at - first;
  };
  skipSign();
  qsizetype digits = countDigits();
  if (more() && number.at(at) == '.') {
    ++at;
    digits += countDigits();
  }
  if (digits == 0) return QByteArray();
  QByteArray plain = number.left(at);
  if (more()) {
    const char mark = number.at(at++);
    if (mark != 'e' && mark != 'E' && mark != 'd' && mark != 'D') return QByteArray();
    const qsizetype exponent = at;
    skipSign();
    if (countDigits() == 0 || more()) return QByteArray();
    plain += 'e' + number.mid(exponent);
  }
  return plain;
}

template <typename Integer>
std::optional<Integer> ToInteger(const QString& text) {
  const auto value = NumericValue(text);
  if (!value) return std::nullopt;
  const double rounded = RoundEven(*value);
  if (rounded < std::numeric_limits<Integer>::min() || rounded > std::numeric_limits<Integer>::max()) {
    return std::nullopt;
  }
  return static_cast<Integer>(rounded);
}

}  // namespace

double RoundEven(double value) {
  return std::nearbyint(value);
}

bool IsNumeric(const QString& text) {
  return !PlainNumber(text).isEmpty();
}

std::optional<double> NumericValue(const QString& text) {
  const QByteArray plain = PlainNumber(text);
  if (plain.isEmpty()) return std::nullopt;
  // The conversion of QByteArray gives 0 for a value beyond a double.
  return QString::fromLatin1(plain).toDouble();
}

std::optional<qint16> ToInteger16(const QString& text) {
  return ToInteger<qint16>(text);
}
std::optional<qint32> ToInteger32(const QString& text) {
  return ToInteger<qint32>(text);
}
