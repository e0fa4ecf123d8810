#include "WireText.h"

#include <cstring>

#include "PartBoundaries.h"

namespace {

// Place of the next control character from `at` on, the text's end where there is none. Pictures are long texts with
// few of them, so eight bytes are looked at together.
qsizetype NextControl(QByteArrayView text, qsizetype at) {
  constexpr quint64 blanks = 0x2020202020202020, tops = 0x8080808080808080;
  for (quint64 eight; text.size() - at >= qsizetype(sizeof eight); at += sizeof eight) {
    std::memcpy(&eight, text.data() + at, sizeof eight);
    if ((eight - blanks) & ~eight & tops) break;
  }
  while (at < text.size() && uchar(text[at]) >= ' ') ++at;
  return at;
}

// Whether a line that begins so and ends at `end` ends the message, or one of its parts.
bool EndsSomething(QByteArrayView text, qsizetype end) {
  if (end == 1 && text[0] == '.') return true;
  if (end < 2 || text[0] != '-' || text[1] != '-') return false;
  const QByteArrayView mark = text.first(end).sliced(2);
  return mark.startsWith(kOuterBoundary) || mark.startsWith(kInnerBoundary);
}

}  // namespace

QByteArray WithWireLineEnds(QByteArray wrapped) {
  if (!wrapped.contains('\r') && !wrapped.contains('\n')) return wrapped;
  // A line end of the page that a soft break has come into.
  wrapped.replace("\r=\r\n\n", "=\r\n\r\n");
  QByteArray text;
  text.reserve(wrapped.size() + wrapped.size() / 64);
  qsizetype from = 0;
  for (qsizetype at = 0; at < wrapped.size(); ++at) {
    const char c = wrapped[at];
    if (c != '\r' && c != '\n') continue;
    text.append(QByteArrayView(wrapped).sliced(from, at - from)).append("\r\n");
    if (c == '\r' && at + 1 < wrapped.size() && wrapped[at + 1] == '\n') ++at;
    from = at + 1;
  }
  return text.append(QByteArrayView(wrapped).sliced(from));
}

bool IsWireText(QByteArrayView text) {
  for (qsizetype at = 0;;) {
    at = NextControl(text, at);
    if (at == text.size()) return !EndsSomething(text, at);
    const char c = text[at];
    if (c == '\0' || c == '\n') return false;
    if (c != '\r') {
      ++at;
      continue;
    }
    if (at + 1 == text.size() || text[at + 1] != '\n' || EndsSomething(text, at)) return false;
    text = text.sliced(at + 2);
    at = 0;
  }
}
