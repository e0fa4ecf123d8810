#include "AsciiText.h"

#include <algorithm>

namespace {

char UpperOf(char c) {
  return c >= 'a' && c <= 'z' ? char(c - 'a' + 'A') : c;
}
QChar UpperOf(QChar c) {
  return c >= u'a' && c <= u'z' ? QChar(static_cast<char16_t>(c.unicode() - u'a' + u'A')) : c;
}

template <typename Text>
Text Upper(Text text) {
  for (auto& c : text) c = UpperOf(c);
  return text;
}

template <typename Text>
qsizetype Find(const Text& text, const Text& what, qsizetype from) {
  const qsizetype start = std::clamp<qsizetype>(from, 0, text.size());
  const auto equal = [](auto a, auto b) { return UpperOf(a) == UpperOf(b); };
  const auto begin = text.cbegin() + start;
  if (what.isEmpty()) return start;
  const auto found = std::search(begin, text.cend(), what.cbegin(), what.cend(), equal);
  return found == text.cend() ? -1 : found - text.cbegin();
}

template <typename Text>
Text ReplaceIn(const Text& text, const Text& what, const Text& with, Matches which) {
  if (what.isEmpty()) return text;
  Text result;
  qsizetype copied = 0;
  for (qsizetype at = Find(text, what, 0); at >= 0; at = Find(text, what, copied)) {
    result.append(text.constData() + copied, at - copied).append(with);
    copied = at + what.size();
    if (which == Matches::First) break;
  }
  return result.append(text.constData() + copied, text.size() - copied);
}

template <typename Text, typename Char>
Text Trim(const Text& text, Char blank) {
  qsizetype begin = 0;
  qsizetype end = text.size();
  while (begin < end && text.at(begin) == blank) ++begin;
  while (end > begin && text.at(end - 1) == blank) --end;
  return text.mid(begin, end - begin);
}

}  // namespace

QString UpperAscii(const QString& text) {
  return Upper(text);
}
QByteArray UpperAscii(const QByteArray& text) {
  return Upper(text);
}

qsizetype FindNoCase(const QString& text, const QString& what, qsizetype from) {
  return Find(text, what, from);
}
qsizetype FindNoCase(const QByteArray& text, const QByteArray& what, qsizetype from) {
  return Find(text, what, from);
}

QString ReplaceNoCase(const QString& text, const QString& what, const QString& with, Matches which) {
  return ReplaceIn(text, what, with, which);
}
QByteArray ReplaceNoCase(const QByteArray& text, const QByteArray& what, const QByteArray& with, Matches which) {
  return ReplaceIn(text, what, with, which);
}

bool EqualsNoCase(const QString& a, const QString& b) {
  return UpperAscii(a) == UpperAscii(b);
}

QString TrimBlanks(const QString& text) {
  return Trim(text, QChar(u' '));
}
QByteArray TrimBlanks(const QByteArray& text) {
  return Trim(text, ' ');
}
