#include "WireText.h"

#include "PartBoundaries.h"

namespace {

bool IsWireLine(QByteArrayView line) {
  if (line.isEmpty()) return true;
  if (line.contains('\r') || (line.size() == 1 && line[0] == '.')) return false;
  if (line[0] != '-' || !line.startsWith("--")) return true;
  const QByteArrayView mark = line.sliced(2);
  return !mark.startsWith(kOuterBoundary) && !mark.startsWith(kInnerBoundary);
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
  if (text.contains('\0')) return false;
  for (qsizetype end; (end = text.indexOf('\n')) >= 0; text = text.sliced(end + 1)) {
    if (end == 0 || text[end - 1] != '\r' || !IsWireLine(text.first(end - 1))) return false;
  }
  return IsWireLine(text);
}
