#include "HtmlBody.h"

#include "AsciiText.h"

namespace {

constexpr qsizetype kLongestUnwrapped = 75;
constexpr qsizetype kPiece = 70;
// What is left after a break goes out as it is up to this length.
constexpr qsizetype kLongestRest = 76;

}  // namespace

QByteArray EncodeHtmlBody(const QByteArray& html) {
  QByteArray body = TrimBlanks(html);
  body = ReplaceNoCase(body, "SRC=\"", "SRC=\"cid:");
  body = ReplaceNoCase(body, "BACKGROUND=\"", "BACKGROUND=\"cid:", Matches::First);
  body.replace("=", "=3D");
  return WrapQuotedLines(body);
}

QByteArray WrapQuotedLines(const QByteArray& text) {
  if (text.size() <= kLongestUnwrapped) return text;
  QByteArray lines;
  lines.reserve(text.size() + text.size() / 16);
  qsizetype at = 0;
  do {
    const QByteArrayView piece = QByteArrayView(text).sliced(at, std::min(kPiece, text.size() - at));
    qsizetype kept = piece.lastIndexOf('>') + 1;
    const bool isHard = kept > 0;
    if (!isHard) kept = piece.lastIndexOf(' ') + 1;
    if (kept == 0) kept = piece.size();
    lines.append(piece.first(kept)).append(isHard ? "\r\n" : "=\r\n");
    at += kept;
  } while (text.size() - at > kLongestRest);
  return lines.append(QByteArrayView(text).sliced(at));
}
