#include "StyleDeclarations.h"

#include <QRegularExpression>
#include <QStringList>
#include <algorithm>

namespace {

// Goes through CSS text and tells of each character whether it stands by itself: outside of comments, strings and
// brackets, the contents of url() among them.
class CssScanner {
 public:
  explicit CssScanner(QStringView text) : text_(text) {}

  // Calls `visit(place, isComment, isOutside)` for each character.
  template <typename Visit>
  void Run(Visit visit) {
    for (qsizetype i = 0; i < text_.size(); ++i) {
      const QChar c = text_[i];
      if (c == u'\\' && i + 1 < text_.size()) {
        visit(i, false, false);
        visit(++i, false, false);
        continue;
      }
      if (!quote_.isNull()) {
        if (c == quote_) quote_ = QChar();
      } else if (!isUrl_ && c == u'/' && i + 1 < text_.size() && text_[i + 1] == u'*') {
        const qsizetype found = text_.indexOf(u"*/", i + 2);
        const qsizetype end = found < 0 ? text_.size() : found + 2;
        isInComment_ = found < 0;
        for (; i < end; ++i) visit(i, true, false);
        --i;
        continue;
      } else if (!isUrl_ && (c == u'"' || c == u'\'')) {
        quote_ = c;
      } else if (!isUrl_ && (c == u'(' || c == u'[' || c == u'{')) {
        open_ += c == u'(' ? u')' : c == u'[' ? u']' : u'}';
        isUrl_ =
            c == u'(' && i >= 3 && text_.mid(i - 3, 3).compare(u"url", Qt::CaseInsensitive) == 0 && !IsQuoted(i + 1);
      } else if (!open_.isEmpty() && c == open_.back()) {
        open_.chop(1);
        isUrl_ = false;
      } else if (open_.isEmpty()) {
        visit(i, false, true);
        continue;
      }
      visit(i, false, false);
    }
  }

  // What would have to follow so that nothing is left open.
  QString Closing() const {
    QString closing = isInComment_ ? QStringLiteral("*/") : QString();
    if (!quote_.isNull()) closing += quote_;
    for (qsizetype i = open_.size(); i > 0; --i) closing += open_[i - 1];
    return closing;
  }

 private:
  bool IsQuoted(qsizetype at) const {
    while (at < text_.size() && text_[at].isSpace()) ++at;
    return at < text_.size() && (text_[at] == u'"' || text_[at] == u'\'');
  }

  QStringView text_;
  QChar quote_;
  QString open_;  // closing brackets that are waited for
  bool isUrl_ = false;
  bool isInComment_ = false;
};

// Splits at `separator` outside strings and brackets.
QStringList SplitOutside(const QString& text, QChar separator) {
  QStringList parts(QString{});
  CssScanner(text).Run([&](qsizetype at, bool, bool isOutside) {
    if (isOutside && text[at] == separator) {
      parts += QString();
    } else {
      parts.back() += text[at];
    }
  });
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

// Words that CSS takes for a family's name without quotes.
bool IsRowOfIdentifiers(const QString& family) {
  static const QRegularExpression identifiers(
      QStringLiteral("^-?[A-Za-z_\\x{80}-\\x{10ffff}][-\\w\\x{80}-\\x{10ffff}]*"
                     "( -?[A-Za-z_\\x{80}-\\x{10ffff}][-\\w\\x{80}-\\x{10ffff}]*)*$"));
  return identifiers.match(family).hasMatch();
}

// What is known only when the page is laid out is valid as it stands.
bool HasVariable(const QString& value) {
  return value.contains(u"var(", Qt::CaseInsensitive);
}

// The families as they may be written.
QString QuotedFamilies(const QString& value) {
  if (HasVariable(value)) return value;
  QStringList families;
  for (const QString& part : SplitOutside(value, u',')) {
    QString family = part.trimmed();
    const bool quoted = family.size() >= 2 && (family[0] == u'"' || family[0] == u'\'') && family.back() == family[0];
    if (!quoted && !IsRowOfIdentifiers(family.simplified())) {
      family.replace(u'\\', QLatin1String("\\\\")).replace(u'\'', QLatin1String("\\'"));
      family = u'\'' + family + u'\'';
    }
    families += family;
  }
  return families.join(QStringLiteral(", "));
}

QString FontFamilyValue(const QString& written) {
  if (HasVariable(written)) return written;
  QStringList families;
  for (const QString& part : SplitOutside(written, u',')) {
    QString family = part.trimmed();
    const bool quoted = family.size() >= 2 && (family[0] == u'"' || family[0] == u'\'') && family.back() == family[0];
    if (quoted) {
      family = family.mid(1, family.size() - 2);
    } else {
      family = family.simplified();
      if (!IsRowOfIdentifiers(family)) return {};  // one bad name makes the declaration invalid
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
  style.text_ = text;
  style.quirks_ = quirks;
  style.Read();
  return style;
}

void StyleDeclarations::Read() {
  declarations_.clear();
  Declaration declaration{};
  QString bare;  // of the declaration, without comments
  qsizetype colon = -1;
  bool isBegun = false;
  const auto end = [&] {
    if (colon >= 0) {
      static const QRegularExpression important(QStringLiteral("\\s*!\\s*important$"),
                                                QRegularExpression::CaseInsensitiveOption);
      declaration.property = bare.left(colon).trimmed().toLower();
      declaration.value = bare.mid(colon + 1).trimmed();
      declaration.important = declaration.value.contains(important);
      declaration.value.remove(important);
      if (!declaration.property.isEmpty()) declarations_.push_back(declaration);
    }
    declaration = {};
    bare.clear();
    colon = -1;
    isBegun = false;
  };
  CssScanner scanner(text_);
  scanner.Run([&](qsizetype at, bool isComment, bool isOutside) {
    const QChar c = text_[at];
    if (isOutside && c == u';') return end();
    if (isComment) return;
    if (!c.isSpace()) {
      if (!isBegun) declaration.from = at;
      isBegun = true;
      declaration.to = at + 1;
      if (colon >= 0 && declaration.valueFrom == 0) declaration.valueFrom = at;
      if (isOutside && c == u':' && colon < 0) colon = bare.size();
    }
    if (isBegun) bare += c;
  });
  isEnded_ = !isBegun;
  closing_ = scanner.Closing();
  end();
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
  if (Value(property) == value) return;
  const QString written = property == u"font-family" ? QuotedFamilies(value) : value;
  const auto isProperty = [&](const Declaration& declaration) { return declaration.property == property; };
  const auto first = std::find_if(declarations_.begin(), declarations_.end(), isProperty);
  const bool shadowed =
      std::any_of(first, declarations_.end(), [](const Declaration& d) { return d.property == u"font"; });
  const bool inPlace = !value.isEmpty() && first != declarations_.end() && !shadowed;
  const qsizetype kept = inPlace ? first->from : -1;
  for (std::size_t i = declarations_.size(); i > 0; --i) {
    const Declaration declaration = declarations_[i - 1];
    if (isProperty(declaration) && declaration.from != kept) Remove(declaration);
  }
  if (inPlace) {
    const qsizetype from = first->valueFrom > 0 ? first->valueFrom : first->to;
    text_.replace(from, first->to - from, written);
  } else if (!value.isEmpty()) {
    // It has to be as important as a shorthand that it is to win over.
    const bool important = property.startsWith(u"font-") &&
                           std::any_of(declarations_.begin(), declarations_.end(),
                                       [](const Declaration& d) { return d.property == u"font" && d.important; });
    Append(property + QLatin1String(": ") + written + QLatin1String(important ? " !important;" : ";"));
  }
  Read();
}

// With its ";" and the blanks behind it. What is in front of it keeps its place.
void StyleDeclarations::Remove(const Declaration& declaration) {
  qsizetype end = declaration.to;
  while (end < text_.size() && text_[end].isSpace()) ++end;
  if (end < text_.size() && text_[end] == u';') ++end;
  while (end < text_.size() && text_[end].isSpace()) ++end;
  const bool isLast = end == text_.size();
  text_.remove(declaration.from, end - declaration.from);
  if (isLast) {
    while (text_.endsWith(u' ')) text_.chop(1);
    isEnded_ = true;
    closing_.clear();
  }
}

void StyleDeclarations::Append(const QString& declaration) {
  text_ += closing_;
  if (!isEnded_) text_ += u';';
  if (!text_.isEmpty() && !text_.back().isSpace()) text_ += u' ';
  text_ += declaration;
}
