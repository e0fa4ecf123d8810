#include "HtmlLexer.h"

namespace {

bool IsLetter(QChar c) {
  return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}
bool IsSpace(QChar c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\f' || c == u'\r';
}
bool EndsName(QChar c) {
  return IsSpace(c) || c == u'/' || c == u'>';
}

// ASCII letters only, as HTML has it.
QString Lower(QStringView name) {
  QString lower = name.toString();
  for (QChar& c : lower)
    if (c >= u'A' && c <= u'Z') c = QChar(c.unicode() + 32);
  return lower;
}

bool IsOneOf(const QString& name, std::initializer_list<const char*> names) {
  for (const char* const one : names)
    if (name == QLatin1String(one)) return true;
  return false;
}

}  // namespace

const HtmlPiece::Attribute* HtmlPiece::Find(QLatin1String wanted) const {
  for (const Attribute& attribute : attributes)
    if (attribute.name.compare(wanted, Qt::CaseInsensitive) == 0) return &attribute;
  return nullptr;
}

qsizetype HtmlLexer::Behind(QLatin1String end, qsizetype from) const {
  const qsizetype found = html_.indexOf(end, from);
  return found < 0 ? html_.size() : found + end.size();
}

// `from` is behind "<!" or stands at the "?" or "/" of a tag that is none.
qsizetype HtmlLexer::EndOfMarkup(qsizetype from) const {
  const QStringView rest = html_.mid(from, 7);
  // In SVG it is text without references, elsewhere it ends at the first ">".
  if (rest.startsWith(QLatin1String("[CDATA["))) return Behind(QLatin1String("]]>"), from);
  if (!rest.startsWith(QLatin1String("--"))) return Behind(QLatin1String(">"), from);
  if (rest.startsWith(QLatin1String("-->"))) return from + 3;
  if (rest.startsWith(QLatin1String("--->"))) return from + 4;
  for (qsizetype at = from + 2; (at = html_.indexOf(QLatin1String("--"), at)) >= 0; ++at) {
    const QStringView behind = html_.mid(at + 2, 2);
    if (behind.startsWith(u'>')) return at + 3;
    if (behind == u"!>") return at + 4;
  }
  return html_.size();
}

// Where the end tag of that name begins; the end of the text when there is none.
qsizetype HtmlLexer::EndTagOf(QStringView name, qsizetype from) const {
  for (qsizetype at = from; (at = html_.indexOf(QLatin1String("</"), at)) >= 0; ++at) {
    const qsizetype behind = at + 2 + name.size();
    if (html_.mid(at + 2, name.size()).compare(name, Qt::CaseInsensitive) == 0 &&
        (behind >= html_.size() || EndsName(html_[behind])))
      return at;
  }
  return html_.size();
}

// A script may hold another script's tags inside of "<!--", and only the end tag behind those is its own.
qsizetype HtmlLexer::EndOfScript(qsizetype from) const {
  static constexpr QStringView script = u"script";
  const qsizetype end = EndTagOf(script, from);
  if (html_.mid(from, end - from).indexOf(QLatin1String("<!--")) < 0) return end;
  bool isEscaped = false;
  bool isDouble = false;
  for (qsizetype at = from; at < html_.size(); ++at) {
    const QChar c = html_[at];
    if (c == u'-' && isEscaped && html_.mid(at, 3) == u"-->") {
      isEscaped = isDouble = false;
    } else if (c == u'<') {
      if (!isEscaped && html_.mid(at, 4) == u"<!--") {
        isEscaped = true;
        ++at;  // "<!-->" ends it at once: its dashes count for both
        continue;
      }
      const bool isEnd = At(at + 1) == u'/';
      const qsizetype nameAt = at + (isEnd ? 2 : 1);
      if (html_.mid(nameAt, script.size()).compare(script, Qt::CaseInsensitive) != 0 ||
          (nameAt + script.size() < html_.size() && !EndsName(html_[nameAt + script.size()])))
        continue;
      if (isEnd && !isDouble) return at;
      if (isEscaped) isDouble = !isEnd;
    }
  }
  return html_.size();
}

// From behind the tag's name to behind its ">".
qsizetype HtmlLexer::ReadAttributes(qsizetype from, HtmlPiece& piece) const {
  qsizetype at = from;
  while (at < html_.size()) {
    while (at < html_.size() && (IsSpace(html_[at]) || html_[at] == u'/')) ++at;
    if (at >= html_.size()) break;
    if (html_[at] == u'>') return at + 1;
    const qsizetype nameAt = at++;  // a "=" may be the first character of a name
    while (at < html_.size() && !EndsName(html_[at]) && html_[at] != u'=') ++at;
    HtmlPiece::Attribute attribute{html_.mid(nameAt, at - nameAt), at, at, false};
    qsizetype next = at;
    while (next < html_.size() && IsSpace(html_[next])) ++next;
    if (At(next) == u'=') {
      at = next + 1;
      while (at < html_.size() && IsSpace(html_[at])) ++at;
      const QChar quote = At(at);
      if (quote == u'"' || quote == u'\'') {
        const qsizetype end = html_.indexOf(quote, at + 1);
        attribute.from = at + 1;
        attribute.to = end < 0 ? html_.size() : end;
        attribute.isQuoted = true;
        at = end < 0 ? html_.size() : end + 1;
      } else {
        attribute.from = at;
        while (at < html_.size() && !IsSpace(html_[at]) && html_[at] != u'>') ++at;
        attribute.to = at;
      }
    }
    piece.attributes.push_back(attribute);
  }
  return html_.size();
}

void HtmlLexer::FindRawText(const QString& name) {
  if (name == u"plaintext") {
    rawEnd_ = html_.size();
    isRaw_ = true;
  } else if (name == u"script") {
    rawEnd_ = EndOfScript(at_);
    isRaw_ = true;
  } else if (IsOneOf(name, {"style", "xmp", "iframe", "noembed", "noframes"}) ||
             (name == u"noscript" && noscript_ == Noscript::Raw)) {
    rawEnd_ = EndTagOf(name, at_);
    isRaw_ = true;
  } else if (name == u"title" || name == u"textarea") {
    rawEnd_ = EndTagOf(name, at_);
    // The TITLE of an SVG holds tags like any other element.
    isRaw_ = html_.mid(at_, rawEnd_ - at_).contains(u'<');
  }
}

bool HtmlLexer::Next(HtmlPiece& piece) {
  piece.from = at_;
  piece.name.clear();
  piece.attributes.clear();
  if (rawEnd_ >= 0) {
    const qsizetype end = std::exchange(rawEnd_, -1);
    if (end > at_) {
      piece.kind = isRaw_ ? HtmlPiece::Kind::Raw : HtmlPiece::Kind::Text;
      piece.to = at_ = end;
      return true;
    }
  }
  if (at_ >= html_.size()) return false;
  // Text goes on to the next "<" that begins something.
  for (qsizetype at = at_;; ++at) {
    at = html_.indexOf(u'<', at);
    const QChar next = at < 0 ? QChar() : At(at + 1);
    const bool isEnd = next == u'/' && at + 2 < html_.size();
    if (at >= 0 && !IsLetter(next) && next != u'!' && next != u'?' && !isEnd) continue;
    if (at != at_) {
      piece.kind = HtmlPiece::Kind::Text;
      piece.to = at_ = at < 0 ? html_.size() : at;
      return true;
    }
    const qsizetype nameAt = at + (isEnd ? 2 : 1);
    if (!IsLetter(At(nameAt))) {
      piece.kind = HtmlPiece::Kind::Markup;
      piece.to = at_ = EndOfMarkup(next == u'!' ? at + 2 : at + 1);
      return true;
    }
    qsizetype end = nameAt;
    while (end < html_.size() && !EndsName(html_[end])) ++end;
    piece.kind = isEnd ? HtmlPiece::Kind::EndTag : HtmlPiece::Kind::StartTag;
    piece.name = Lower(html_.mid(nameAt, end - nameAt));
    piece.to = at_ = ReadAttributes(end, piece);
    if (!isEnd) FindRawText(piece.name);
    return true;
  }
}
