#include "PageText.h"

#include <algorithm>
#include <array>

#include "CodePage.h"
#include "HtmlLexer.h"
#include "PageEncodings.h"

namespace {

constexpr char16_t kLastPlain = 0x7E;
constexpr char32_t kReplacement = 0xFFFD;

// What has to be looked at; everything else of ASCII is written as it is in any part of a page.
constexpr std::array<bool, kLastPlain + 1> kSpecial = [] {
  std::array<bool, kLastPlain + 1> special{};
  for (std::size_t c = 0; c < 0x20; ++c) special[c] = c != '\t' && c != '\n';
  for (const char c : {'&', '<', '>', '"', '.'}) special[std::size_t(c)] = true;
  return special;
}();

// HTML reads references to these as the characters of Windows-1252.
bool HasNoReference(char32_t c) {
  return c >= 0x80 && c < 0xA0;
}

void AppendReference(QString& page, char32_t c) {
  char digits[8];
  int at = sizeof digits;
  for (; c > 0; c /= 10) digits[--at] = char('0' + c % 10);
  page += QLatin1String("&#");
  page += QLatin1String(digits + at, int(sizeof digits) - at);
  page += u';';
}

bool IsAscii(QStringView text) {
  for (const QChar c : text)
    if (c.unicode() > kLastPlain) return false;
  return true;
}

// Whether every encoding that a page may say reads the text alike: some take controls for others or for the beginning
// of another set of characters.
bool IsReadAlike(QStringView text) {
  for (const QChar c : text)
    if (c.unicode() > kLastPlain || (c.unicode() < 0x20 && c != u'\t' && c != u'\n' && c != u'\r' && c != u'\f'))
      return false;
  return true;
}

QLatin1String EntityOf(char16_t c, PagePart part) {
  if (part == PagePart::Markup) return {};
  switch (c) {
    case '&':
      return QLatin1String("&amp;");
    case 0xA0:
      return QLatin1String("&nbsp;");
    case '"':
      return part == PagePart::Value ? QLatin1String("&quot;") : QLatin1String();
    case '<':
      return part == PagePart::Text ? QLatin1String("&lt;") : QLatin1String();
    case '>':
      return part == PagePart::Text ? QLatin1String("&gt;") : QLatin1String();
    default:
      return {};
  }
}

// --- META

bool IsSpace(QChar c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\f' || c == u'\r';
}

// Where in the CONTENT of a META its encoding stands; empty where it names none.
QStringView CharsetIn(QStringView content) {
  static constexpr QStringView word = u"charset";
  for (qsizetype at = 0; (at = content.indexOf(word, at, Qt::CaseInsensitive)) >= 0;) {
    at += word.size();
    const auto skip = [&] {
      while (at < content.size() && IsSpace(content[at])) ++at;
    };
    skip();
    if (at >= content.size() || content[at] != u'=') continue;
    ++at;
    skip();
    if (at >= content.size()) return {};
    const QChar quote = content[at];
    if (quote == u'"' || quote == u'\'') {
      const qsizetype end = content.indexOf(quote, at + 1);
      return end < 0 ? QStringView() : content.mid(at + 1, end - at - 1);
    }
    qsizetype end = at;
    while (end < content.size() && !IsSpace(content[end]) && content[end] != u';') ++end;
    return content.mid(at, end - at);
  }
  return {};
}

// The places in `page` at which a META names its encoding, that which counts first.
QList<QStringView> CharsetsOf(const HtmlPiece& meta, QStringView page) {
  QList<QStringView> places;
  if (const auto* charset = meta.Find(QLatin1String("charset")))
    places += page.mid(charset->from, charset->to - charset->from);
  const auto* const kind = meta.Find(QLatin1String("http-equiv"));
  const auto* const content = meta.Find(QLatin1String("content"));
  if (kind && content &&
      page.mid(kind->from, kind->to - kind->from).compare(u"content-type", Qt::CaseInsensitive) == 0) {
    const QStringView place = CharsetIn(page.mid(content->from, content->to - content->from));
    if (!place.isEmpty()) places += place;
  }
  return places;
}

bool IsMeta(const HtmlPiece& piece) {
  return piece.kind == HtmlPiece::Kind::StartTag && piece.name == u"meta";
}

bool MayStandInHead(const HtmlPiece& piece) {
  for (const char* const name : {"script", "noscript", "style", "link", "meta", "object", "title", "base"})
    if (piece.name == QLatin1String(name)) return true;
  return piece.kind == HtmlPiece::Kind::StartTag && (piece.name == u"html" || piece.name == u"head");
}

// How far a browser looks for a META whatever it meets; within HEAD it goes on.
constexpr qsizetype kLookedAt = 1024;

// The encodings that a page's METAs may name. UTF-16 can't be meant by something that was read byte by byte.
QString EncodingOfMeta(QStringView label) {
  const QString name = PageEncodings::OfLabel(label);
  return name == PageEncodings::kUtf16Le || name == PageEncodings::kUtf16Be ? PageEncodings::kUtf8 : name;
}

// In front of which character a META is the first thing of HEAD.
qsizetype HeadStart(QStringView page) {
  HtmlLexer lexer(page);
  HtmlPiece piece;
  qsizetype place = 0;
  while (lexer.Next(piece)) {
    if (piece.kind == HtmlPiece::Kind::StartTag && piece.name == u"head") return piece.to;
    const bool isBlank =
        piece.kind == HtmlPiece::Kind::Text && page.mid(piece.from, piece.to - piece.from).trimmed().isEmpty();
    if (piece.kind == HtmlPiece::Kind::StartTag && piece.name == u"html") {
      place = piece.to;
    } else if (piece.kind != HtmlPiece::Kind::Markup && !isBlank) {
      break;
    } else if (piece.kind == HtmlPiece::Kind::Markup && place == 0) {
      // Behind a document type, which nothing may stand in front of.
      if (page.mid(piece.from, 9).compare(u"<!doctype", Qt::CaseInsensitive) == 0) place = piece.to;
    }
  }
  return place;
}

// Makes the page say its encoding in its first META that names one, or in one more.
void SayEncoding(QString& page, const QString& encoding) {
  const QString label = encoding == PageEncodings::kUtf8 ? QStringLiteral("utf-8") : encoding;
  HtmlLexer lexer(page);
  HtmlPiece piece;
  while (lexer.Next(piece)) {
    if (!IsMeta(piece)) continue;
    QList<QStringView> places = CharsetsOf(piece, page);
    if (places.isEmpty()) continue;
    // From the back, so that the places before stay what they are.
    if (places.size() == 2 && places[0].data() < places[1].data()) places.swapItemsAt(0, 1);
    QString restated = page;
    for (const QStringView place : places)
      restated.replace(place.data() - QStringView(page).data(), place.size(), label);
    if (EncodingSaid(restated) == encoding) {
      page = restated;
      return;
    }
    break;  // it stands where nobody looks for it
  }
  page.insert(HeadStart(page), QLatin1String("<meta charset=\"") + label + QLatin1String("\" />"));
}

// --- References

// Reads the reference at `at`; 0 when none stands there, else its length.
qsizetype ReadReference(const QByteArray& bytes, qsizetype at, char32_t& c) {
  static constexpr QByteArrayView blank("&nbsp;");
  const QByteArrayView rest = QByteArrayView(bytes).sliced(at);
  if (rest.startsWith(blank)) {
    c = 0xA0;
    return blank.size();
  }
  if (!rest.startsWith("&#")) return 0;
  qsizetype end = 2;
  const bool isHex = end < rest.size() && (rest[end] == 'x' || rest[end] == 'X');
  if (isHex) ++end;
  const qsizetype first = end;
  const auto digit = [&](char one) {
    if (one >= '0' && one <= '9') return one - '0';
    if (isHex && one >= 'a' && one <= 'f') return one - 'a' + 10;
    if (isHex && one >= 'A' && one <= 'F') return one - 'A' + 10;
    return -1;
  };
  c = 0;
  for (; end < rest.size() && digit(rest[end]) >= 0; ++end)
    c = std::min<char32_t>(c * (isHex ? 16 : 10) + char32_t(digit(rest[end])), 0x110000);
  if (end == first || c <= kLastPlain) return 0;
  if (HasNoReference(c)) c = FromCodePage(QByteArray(1, char(c)))[0].unicode();
  if (c > 0x10FFFF || (c >= 0xD800 && c < 0xE000)) c = kReplacement;
  return end < rest.size() && rest[end] == ';' ? end + 1 : end;
}

// The source with all in it that references may stand in written by `write(out, name of attribute or "", text)`.
template <typename Write>
QString WithTextRewritten(const QString& source, Write write) {
  QString out;
  out.reserve(source.size() + source.size() / 8);
  const QStringView all(source);
  HtmlLexer lexer(source);
  HtmlPiece piece;
  while (lexer.Next(piece)) {
    if (piece.kind == HtmlPiece::Kind::Text) {
      write(out, QStringView(), all.mid(piece.from, piece.to - piece.from));
      continue;
    }
    qsizetype done = piece.from;
    if (piece.kind == HtmlPiece::Kind::StartTag) {
      for (const HtmlPiece::Attribute& attribute : piece.attributes) {
        out += all.mid(done, attribute.from - done);
        write(out, attribute.name, all.mid(attribute.from, attribute.to - attribute.from));
        done = attribute.to;
      }
    }
    out += all.mid(done, piece.to - done);
  }
  return out;
}

bool IsUtf8(const QByteArray& bytes) {
  return bytes.isValidUtf8();
}

}  // namespace

void AppendPageText(QString& page, QStringView text, PagePart part) {
  // Of a text in two nodes the second may begin with the line end behind the first one's ".".
  if (text.startsWith(u'\n') && page.endsWith(u'.')) {
    page.chop(1);
    AppendReference(page, '.');
  }
  qsizetype from = 0;
  for (qsizetype i = 0; i < text.size(); ++i) {
    const char16_t c = text[i].unicode();
    if (c <= kLastPlain && !kSpecial[c]) continue;
    const QLatin1String entity = EntityOf(c, part);
    char32_t code = 0;
    qsizetype length = 1;
    if (entity.isEmpty()) {
      if (c == '.') {
        const QChar before = i > 0 ? text[i - 1] : page.isEmpty() ? QChar() : page.back();
        if (before != u'\n' && (i + 1 == text.size() || text[i + 1] != u'\n')) continue;
      } else if ((c >= 0x20 && c <= kLastPlain) || HasNoReference(c)) {
        continue;
      }
      code = c;
      if (QChar::isHighSurrogate(c) && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
        code = QChar::surrogateToUcs4(text[i], text[i + 1]);
        length = 2;
      } else if (QChar::isSurrogate(c) || c == 0) {
        code = kReplacement;
      }
    }
    page += text.mid(from, i - from);
    if (entity.isEmpty()) {
      AppendReference(page, code);
    } else {
      page += entity;
    }
    i += length - 1;
    from = i + 1;
  }
  page += text.mid(from);
}

bool DependsOnEncoding(QStringView attribute, QStringView value) {
  const qsizetype query = value.indexOf(u'?');
  if (query < 0 || IsAscii(value.mid(query))) return false;
  for (const char* const name :
       {"href",    "src",      "action",      "background", "cite",       "data",  "formaction", "longdesc",
        "poster",  "srcset",   "imagesrcset", "lowsrc",     "dynsrc",     "ping",  "codebase",   "classid",
        "archive", "manifest", "profile",     "usemap",     "xlink:href", "style", "content"})
    if (attribute.compare(QLatin1String(name), Qt::CaseInsensitive) == 0) return true;
  return false;
}

QByteArray PageFileBytes(QString page, const QString& encoding) {
  const bool isReadAlike = IsReadAlike(page);
  QString needed = isReadAlike ? encoding : QString(PageEncodings::kUtf8);
  // A page in UTF-16 sends queries in UTF-8.
  if (needed == PageEncodings::kUtf16Le || needed == PageEncodings::kUtf16Be) needed = PageEncodings::kUtf8;
  if (!needed.isEmpty() && EncodingOfMeta(needed) == needed) {
    const QString said = EncodingSaid(page);
    if ((said.isEmpty() ? QString(PageEncodings::kWindows1252) : said) != needed) SayEncoding(page, needed);
  }
  return isReadAlike ? page.toLatin1() : page.toUtf8();
}

QByteArray SourceFileBytes(const QString& source, const QString& encoding) {
  bool depends = false;
  const QString page = WithTextRewritten(source, [&](QString& out, QStringView attribute, QStringView text) {
    AppendPageText(out, text, PagePart::Markup);
    depends = depends || DependsOnEncoding(attribute, text);
  });
  return PageFileBytes(page, depends ? encoding : QString());
}

QString SourceToEdit(const QString& source) {
  const auto isOtherLineEnd = [](QChar c) { return c == u'\r' || c == u'\u2028' || c == u'\u2029'; };
  if (std::none_of(source.begin(), source.end(), isOtherLineEnd)) return source;
  return WithTextRewritten(source, [&](QString& out, QStringView, QStringView text) {
    for (const QChar c : text) {
      if (isOtherLineEnd(c)) {
        AppendReference(out, c.unicode());
      } else {
        out += c;
      }
    }
  });
}

QString EncodingSaid(QStringView page) {
  HtmlLexer lexer(page, HtmlLexer::Noscript::Tags);
  HtmlPiece piece;
  bool isHead = true;
  while (lexer.Next(piece)) {
    const bool isTag = piece.kind == HtmlPiece::Kind::StartTag || piece.kind == HtmlPiece::Kind::EndTag;
    if (IsMeta(piece)) {
      const QList<QStringView> places = CharsetsOf(piece, page);
      const QString name = places.isEmpty() ? QString() : EncodingOfMeta(places.first());
      if (!name.isEmpty()) return name;
    }
    if (isTag && !MayStandInHead(piece)) isHead = false;
    if (!isHead && piece.to >= kLookedAt) break;
  }
  return {};
}

PageContent DecodePage(const QByteArray& bytes) {
  struct Mark {
    QByteArrayView bytes;
    QLatin1String encoding;
  };
  static constexpr Mark marks[] = {{"\xEF\xBB\xBF", PageEncodings::kUtf8},
                                   {"\xFE\xFF", PageEncodings::kUtf16Be},
                                   {"\xFF\xFE", PageEncodings::kUtf16Le}};
  for (const Mark& mark : marks)
    if (bytes.startsWith(mark.bytes))
      return {PageEncodings::Decode(bytes.mid(mark.bytes.size()), mark.encoding), mark.encoding};
  QString encoding = EncodingSaid(QString::fromLatin1(bytes));
  if (encoding.isEmpty()) {
    const bool isAscii = IsAscii(QString::fromLatin1(bytes));
    encoding = !isAscii && IsUtf8(bytes) ? PageEncodings::kUtf8 : PageEncodings::kWindows1252;
  }
  return {PageEncodings::Decode(bytes, encoding), encoding};
}

QByteArray EncodePageText(const QString& text) {
  QString page;
  AppendPageText(page, text, PagePart::Markup);
  return page.toUtf8();
}

QString DecodePageName(const QByteArray& bytes) {
  // The bytes between references first, as all of them are of one encoding.
  QByteArray raw;
  std::vector<std::pair<qsizetype, char32_t>> references;  // with the place in `raw`
  for (qsizetype at = 0; at < bytes.size();) {
    char32_t c = 0;
    const qsizetype length = bytes[at] == '&' ? ReadReference(bytes, at, c) : 0;
    if (length > 0) {
      references.emplace_back(raw.size(), c);
      at += length;
    } else {
      raw += bytes[at++];
    }
  }
  bool isUtf8 = true;
  qsizetype from = 0;
  for (const auto& [place, c] : references) {
    isUtf8 = isUtf8 && IsUtf8(raw.mid(from, place - from));
    from = place;
  }
  isUtf8 = isUtf8 && IsUtf8(raw.mid(from));
  const auto decoded = [&](qsizetype begin, qsizetype end) {
    const QByteArray piece = raw.mid(begin, end - begin);
    return isUtf8 ? PageEncodings::Decode(piece, PageEncodings::kUtf8) : FromCodePage(piece);
  };
  QString text;
  from = 0;
  for (const auto& [place, c] : references) {
    text += decoded(from, place);
    text += QString::fromUcs4(&c, 1);
    from = place;
  }
  return text + decoded(from, raw.size());
}

QList<QByteArray> PageNameForms(const QString& name) {
  QList<QByteArray> forms;
  QString referenced;
  AppendPageText(referenced, name, PagePart::Value);
  referenced.replace(QLatin1String("&amp;"), QLatin1String("&"));  // nobody reads that one
  for (const QByteArray& form : {EncodePageText(name), referenced.toUtf8(), name.toUtf8(), ToCodePage(name)})
    if (!forms.contains(form)) forms += form;
  return forms;
}
