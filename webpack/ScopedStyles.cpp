#include "ScopedStyles.h"

#include <QRegularExpression>
#include <QStringList>

namespace {

bool IsNameCharacter(QChar c) {
  return c.isLetterOrNumber() || c == u'-' || c == u'_' || c.unicode() >= 0x80;
}

bool IsLineEnd(QChar c) {
  return c == u'\n' || c == u'\r' || c == u'\f';
}

// Place behind a string that begins there, or of the text's end. A line end that isn't escaped ends one, too.
qsizetype BehindString(const QString& css, qsizetype at) {
  const QChar quote = css[at++];
  while (at < css.size() && css[at] != quote && !IsLineEnd(css[at])) at += css[at] == u'\\' ? 2 : 1;
  return std::min(at + 1, css.size());
}

// An address without quotes begins there. It goes on to the next ")", whatever else is in it.
bool IsBareAddress(const QString& css, qsizetype at) {
  if (!QStringView(css).mid(at).startsWith(u"url(", Qt::CaseInsensitive)) return false;
  if (at > 0 && IsNameCharacter(css[at - 1])) return false;
  at += 4;
  while (at < css.size() && css[at].isSpace()) ++at;
  return at < css.size() && css[at] != u'"' && css[at] != u'\'';
}

// Whether what begins there is one piece whatever is in it: a string, an address, or an escaped character.
bool IsOnePiece(const QString& css, qsizetype at) {
  return css[at] == u'"' || css[at] == u'\'' || css[at] == u'\\' || IsBareAddress(css, at);
}

// Place behind it, or of the text's end.
qsizetype BehindPiece(const QString& css, qsizetype at) {
  if (css[at] == u'"' || css[at] == u'\'') return BehindString(css, at);
  if (css[at] == u'\\') return std::min(at + 2, css.size());
  while (at < css.size() && css[at] != u')') at += css[at] == u'\\' ? 2 : 1;
  return std::min(at + 1, css.size());
}

// Place of the first of `ends` that stands in no string and no bracket; the text's end when there is none.
qsizetype FindOutside(const QString& css, qsizetype at, QStringView ends) {
  int depth = 0;
  while (at < css.size()) {
    const QChar c = css[at];
    if (depth == 0 && ends.contains(c)) return at;
    if (IsOnePiece(css, at)) {
      at = BehindPiece(css, at);
      continue;
    }
    if (c == u'(' || c == u'[') ++depth;
    if ((c == u')' || c == u']') && depth > 0) --depth;
    ++at;
  }
  return css.size();
}

// Place behind the block whose "{" stands there.
qsizetype BehindBlock(const QString& css, qsizetype at) {
  int depth = 0;
  while (at < css.size()) {
    if (IsOnePiece(css, at)) {
      at = BehindPiece(css, at);
      continue;
    }
    if (css[at] == u'{') ++depth;
    if (css[at] == u'}' && --depth == 0) return at + 1;
    ++at;
  }
  return css.size();
}

QString WithoutComments(const QString& css) {
  QString text;
  for (qsizetype at = 0; at < css.size();) {
    if (IsOnePiece(css, at)) {
      const qsizetype end = BehindPiece(css, at);
      text += QStringView(css).mid(at, end - at);
      at = end;
    } else if (QStringView(css).mid(at).startsWith(u"/*")) {
      const qsizetype end = css.indexOf(u"*/", at + 2);
      at = end < 0 ? css.size() : end + 2;
      text += u' ';
    } else {
      text += css[at++];
    }
  }
  // Old pages hide their sheets in an HTML comment.
  return text.remove(QStringLiteral("<!--")).remove(QStringLiteral("-->"));
}

// Whether it ends where it seems to, whatever comes behind it in a sheet.
bool IsClosed(const QString& css) {
  const QString text = css + u' ';  // a piece that nothing ends goes on into this
  QString open;
  for (qsizetype at = 0; at < css.size();) {
    const QChar c = css[at];
    if (IsOnePiece(text, at)) {
      at = BehindPiece(text, at);
      if (at > css.size() || IsLineEnd(css[at - 1])) return false;
      continue;
    }
    if (c == u'{' || c == u'}') return false;
    if (c == u'(' || c == u'[') open += c;
    if (c == u')' || c == u']') {
      if (!open.endsWith(c == u')' ? u'(' : u'[')) return false;
      open.chop(1);
    }
    ++at;
  }
  return open.isEmpty();
}

struct Selector {
  QString text;
  bool isPage = false;  // stands for HTML or BODY itself
};

// One selector without commas at its top.
Selector ScopeSelector(const QString& given, const StyleScope& scope) {
  Selector selector;
  const QString text = given.trimmed();
  QString& made = selector.text;
  bool isRoot = false;  // the part of the page has been named already
  int brackets = 0;     // that are open
  for (qsizetype at = 0; at < text.size();) {
    const QChar c = text[at];
    if (c == u'"' || c == u'\'') {
      const qsizetype end = BehindString(text, at);
      made += QStringView(text).mid(at, end - at);
      at = end;
    } else if (c == u'[') {
      const qsizetype end = FindOutside(text, at + 1, u"]");
      made += QStringView(text).mid(at, end + 1 - at);
      at = end + 1;
    } else if (c == u'#') {
      made += u'#' + scope.idPrefix;
      ++at;
    } else if (IsNameCharacter(c) || c == u'\\' || c == u'.' || c == u':') {
      qsizetype end = at + 1;
      while (end < text.size() &&
             (IsNameCharacter(text[end]) || text[end] == u'\\' || (c == u':' && text[end] == u':')))
        end += text[end] == u'\\' ? 2 : 1;
      const QStringView name = QStringView(text).mid(at, end - at);
      const bool isHtml = name.compare(u"html", Qt::CaseInsensitive) == 0 || name.compare(u":root") == 0;
      if (isHtml || name.compare(u"body", Qt::CaseInsensitive) == 0) {
        // Where it stands behind others, they stand for the part of the page or what is around it.
        if (brackets == 0) made.clear();
        made += isHtml ? scope.html : scope.body;
        isRoot = isRoot || brackets == 0;
        selector.isPage = brackets == 0;
      } else {
        made += name;
        if (c != u':' && c != u'.') selector.isPage = false;
      }
      at = end;
    } else {
      if (c == u'(') ++brackets;
      if (c == u')') --brackets;
      if (c == u' ' || c == u'>' || c == u'+' || c == u'~' || c == u'*') selector.isPage = selector.isPage && c == u' ';
      made += c;
      ++at;
    }
  }
  if (!isRoot) made = scope.html + u' ' + made;
  selector.isPage = selector.isPage && (made == scope.html || made == scope.body);
  return selector;
}

class Reader {
 public:
  explicit Reader(const StyleScope& scope) : scope_(scope) {}

  QString Rules(const QString& css) {
    QString rules;
    for (qsizetype at = 0; at < css.size();) {
      if (css[at].isSpace() || css[at] == u'}' || css[at] == u';') {
        ++at;
        continue;
      }
      const qsizetype head = FindOutside(css, at, css[at] == u'@' ? u"{;" : u"{");
      if (head == css.size()) break;
      if (css[head] == u';') {
        at = head + 1;
        continue;
      }
      const qsizetype end = BehindBlock(css, head);
      const QString prelude = css.mid(at, head - at).trimmed();
      // A block that nothing ends is ended with the sheet.
      const QString block = css.mid(head + 1, (css[end - 1] == u'}' ? end - 1 : end) - head - 1);
      rules += prelude.startsWith(u'@') ? AtRule(prelude, block) : StyleRule(prelude, block);
      at = end;
    }
    return rules;
  }

  QString background;

 private:
  QString AtRule(const QString& prelude, const QString& block) {
    static const QRegularExpression grouping(QStringLiteral("^@(media|supports|layer)\\b"),
                                             QRegularExpression::CaseInsensitiveOption);
    if (!prelude.contains(grouping) || depth_ == kDeepest) return QString();
    ++depth_;
    const QString rules = Rules(block);
    --depth_;
    return prelude + u'{' + rules + u'}';
  }

  QString StyleRule(const QString& prelude, const QString& block) {
    QStringList selectors;
    bool isPage = false;
    for (qsizetype at = 0; at <= prelude.size();) {
      const qsizetype end = FindOutside(prelude, at, u",");
      const Selector selector = ScopeSelector(prelude.mid(at, end - at), scope_);
      selectors += selector.text;
      isPage = isPage || selector.isPage;
      at = end + 1;
    }
    QString declarations = WithPictures(block, scope_);
    // One that depends on the medium stays where it is.
    if (isPage && depth_ == 0) background += TakeBackground(declarations);
    return selectors.join(u',') + u'{' + declarations + u'}';
  }

  const StyleScope& scope_;
  static constexpr int kDeepest = 32;
  int depth_ = 0;
};

}  // namespace

ScopedStyles ScopeStyleSheet(const QString& css, const StyleScope& scope) {
  Reader reader(scope);
  ScopedStyles styles;
  styles.rules = reader.Rules(WithoutComments(css));
  styles.background = reader.background;
  return styles;
}

QString ContainedDeclarations(const QString& style) {
  const QString text = WithoutComments(style);
  QString contained;
  for (qsizetype at = 0; at < text.size();) {
    const qsizetype end = FindOutside(text, at, u";");
    const QString one = text.mid(at, end - at).trimmed();
    if (!one.isEmpty() && IsClosed(one)) contained += one + u';';
    at = end + 1;
  }
  return contained;
}

bool IsMediaQuery(const QString& media) {
  return IsClosed(media) && WithoutComments(media) == media && !media.contains(u';');
}

QString TakeBackground(QString& declarations) {
  QString background, rest;
  for (qsizetype at = 0; at < declarations.size();) {
    const qsizetype end = FindOutside(declarations, at, u";");
    const QString one = declarations.mid(at, end - at).trimmed();
    if (one.startsWith(u"background", Qt::CaseInsensitive)) {
      background += one + u';';
    } else if (!one.isEmpty()) {
      rest += one + u';';
    }
    at = end + 1;
  }
  declarations = rest;
  return background;
}

QString WithPictures(const QString& declarations, const StyleScope& scope) {
  static const QRegularExpression address(QStringLiteral("url\\(\\s*(?:\"([^\"]*)\"|'([^']*)'|([^)\"']*?))\\s*\\)"),
                                          QRegularExpression::CaseInsensitiveOption);
  QString text;
  qsizetype from = 0;
  for (auto matches = address.globalMatch(declarations); matches.hasNext();) {
    const QRegularExpressionMatch match = matches.next();
    const QString url = match.captured(1) + match.captured(2) + match.captured(3);
    text += QStringView(declarations).mid(from, match.capturedStart() - from);
    const QString picture =
        url.startsWith(u'#') ? QStringLiteral("url(#%1%2)").arg(scope.idPrefix, url.mid(1)) : scope.picture(url);
    text += picture.isEmpty() ? match.captured(0) : picture;
    from = match.capturedEnd();
  }
  return text + declarations.mid(from);
}
