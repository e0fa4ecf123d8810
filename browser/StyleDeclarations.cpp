#include "StyleDeclarations.h"

#include <QRegularExpression>
#include <QStringList>
#include <algorithm>

namespace {

// Splits at `separator` outside strings and brackets.
QStringList SplitOutside(const QString& text, QChar separator) {
  QStringList parts;
  QString part;
  QChar quote;
  int depth = 0;
  for (int i = 0; i < text.size(); ++i) {
    const QChar c = text[i];
    if (c == u'\\' && i + 1 < text.size()) {
      part += c;
      part += text[++i];
      continue;
    }
    if (!quote.isNull()) {
      if (c == quote) quote = QChar();
    } else if (c == u'"' || c == u'\'') {
      quote = c;
    } else if (c == u'(' || c == u'[' || c == u'{') {
      ++depth;
    } else if ((c == u')' || c == u']' || c == u'}') && depth > 0) {
      --depth;
    } else if (c == separator && depth == 0) {
      parts += part;
      part.clear();
      continue;
    }
    part += c;
  }
  parts += part;
  return parts;
}

bool IsNumber(const QString& text) {
  static const QRegularExpression pattern(QStringLiteral("^[+]?(\\d+|\\d*\\.\\d+)$"));
  return pattern.match(text).hasMatch();
}

// One size as CSSOM serialises it, or "" when CSS refuses it.
QString FontSizeValue(const QString& written, bool quirks) {
  static const QStringList words = {QStringLiteral("xx-small"), QStringLiteral("x-small"),   QStringLiteral("small"),
                                    QStringLiteral("medium"),   QStringLiteral("large"),     QStringLiteral("x-large"),
                                    QStringLiteral("xx-large"), QStringLiteral("xxx-large"), QStringLiteral("smaller"),
                                    QStringLiteral("larger"),   QStringLiteral("inherit"),   QStringLiteral("initial"),
                                    QStringLiteral("unset"),    QStringLiteral("revert")};
  static const QRegularExpression length(
      QStringLiteral("^[+]?(\\d+|\\d*\\.\\d+)(px|pt|pc|in|cm|mm|q|em|ex|ch|rem|vw|vh|vmin|vmax|%)$"));
  const QString value = written.trimmed().toLower();
  if (words.contains(value)) return value;
  const auto match = length.match(value);
  if (match.hasMatch()) return QString::number(match.captured(1).toDouble()) + match.captured(2);
  if (IsNumber(value) && (quirks || value.toDouble() == 0))
    return QString::number(value.toDouble()) + QLatin1String("px");
  if (value.startsWith(u"calc(") && value.endsWith(u')')) return value;
  return {};
}

QString FontFamilyValue(const QString& written) {
  QStringList families;
  for (const QString& part : SplitOutside(written, u',')) {
    QString family = part.trimmed();
    const bool quoted = family.size() >= 2 && (family[0] == u'"' || family[0] == u'\'') && family.back() == family[0];
    if (quoted) {
      family = family.mid(1, family.size() - 2);
    } else {
      family = family.simplified();
      static const QRegularExpression identifiers(
          QStringLiteral("^-?[A-Za-z_\\x{80}-\\x{10ffff}][-\\w\\x{80}-\\x{10ffff}]*"
                         "( -?[A-Za-z_\\x{80}-\\x{10ffff}][-\\w\\x{80}-\\x{10ffff}]*)*$"));
      if (!identifiers.match(family).hasMatch()) return {};  // one bad name makes the declaration invalid
      static const QStringList keywords = {QStringLiteral("serif"),     QStringLiteral("sans-serif"),
                                           QStringLiteral("cursive"),   QStringLiteral("fantasy"),
                                           QStringLiteral("monospace"), QStringLiteral("inherit"),
                                           QStringLiteral("initial"),   QStringLiteral("unset")};
      if (keywords.contains(family.toLower())) family = family.toLower();
    }
    families += family;
  }
  return families.join(QStringLiteral(", "));
}

// What the "font" shorthand says of the family and the size.
QString FontShorthandPart(const QString& shorthand, const QString& property, bool quirks) {
  const QStringList words = shorthand.simplified().split(u' ');
  for (int i = 0; i + 1 < words.size(); ++i) {
    const QString size = FontSizeValue(words[i].section(u'/', 0, 0), false);
    if (size.isEmpty()) continue;
    const QString family = FontFamilyValue(words.mid(i + 1).join(u' '));
    if (family.isEmpty()) return {};
    return property == u"font-size" ? size : family;
  }
  return {};
}

}  // namespace

StyleDeclarations StyleDeclarations::Parse(const QString& text, bool quirks) {
  StyleDeclarations style;
  style.quirks_ = quirks;
  static const QRegularExpression comment(QStringLiteral("/\\*.*?\\*/"),
                                          QRegularExpression::DotMatchesEverythingOption);
  QString bare = text;
  if (bare.contains(u"/*")) bare.remove(comment);
  for (const QString& part : SplitOutside(bare, u';')) {
    const int colon = int(part.indexOf(u':'));
    if (colon < 0) continue;
    Declaration declaration;
    declaration.property = part.left(colon).trimmed().toLower();
    declaration.value = part.mid(colon + 1).trimmed();
    static const QRegularExpression important(QStringLiteral("\\s*!\\s*important$"),
                                              QRegularExpression::CaseInsensitiveOption);
    if (declaration.value.contains(important)) {
      declaration.important = true;
      declaration.value.remove(important);
    }
    if (!declaration.property.isEmpty()) style.declarations_.push_back(declaration);
  }
  return style;
}

QString StyleDeclarations::Value(const QString& property) const {
  QString result;
  bool important = false;
  for (const Declaration& declaration : declarations_) {
    if (important && !declaration.important) continue;
    QString value;
    if (declaration.property == property) {
      if (property == u"font-size") {
        value = FontSizeValue(declaration.value, quirks_);
      } else if (property == u"font-family") {
        value = FontFamilyValue(declaration.value);
      } else {
        value = declaration.value.toLower();
      }
    } else if (declaration.property == u"font" && property.startsWith(u"font-")) {
      value = FontShorthandPart(declaration.value, property, quirks_);
    }
    if (value.isEmpty()) continue;
    result = value;
    important = declaration.important;
  }
  return result;
}

void StyleDeclarations::Set(const QString& property, const QString& value) {
  const auto isProperty = [&](const Declaration& declaration) { return declaration.property == property; };
  const auto first = std::find_if(declarations_.begin(), declarations_.end(), isProperty);
  const bool shadowed =
      std::any_of(first, declarations_.end(), [](const Declaration& d) { return d.property == u"font"; });
  if (value.isEmpty() || first == declarations_.end() || shadowed) {
    std::erase_if(declarations_, isProperty);
    // It has to be as important as a shorthand that it is to win over.
    const bool important = property.startsWith(u"font-") &&
                           std::any_of(declarations_.begin(), declarations_.end(),
                                       [](const Declaration& d) { return d.property == u"font" && d.important; });
    if (!value.isEmpty()) declarations_.push_back({property, value, important});
    return;
  }
  *first = {property, value, false};
  declarations_.erase(std::remove_if(first + 1, declarations_.end(), isProperty), declarations_.end());
}

QString StyleDeclarations::Text() const {
  QString text;
  for (const Declaration& declaration : declarations_) {
    if (!text.isEmpty()) text += u' ';
    text += declaration.property + QLatin1String(": ") + declaration.value;
    if (declaration.important) text += u" !important";
    text += u';';
  }
  return text;
}
