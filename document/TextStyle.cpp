#include "TextStyle.h"

#include <QColor>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>
#include <iterator>

#include "LegacyColor.h"
#include "PageTree.h"
#include "StyleDeclarations.h"

namespace {

template <std::size_t count>
bool IsOneOf(const Node* element, const char* const (&names)[count]) {
  return element->tag()->space == Namespace::Html &&
         std::any_of(std::begin(names), std::end(names),
                     [&](const char* name) { return element->tag()->localName == QLatin1String(name); });
}

constexpr const char* headings[] = {"h1", "h2", "h3", "h4", "h5", "h6", "th"};
constexpr const char* withOwnFace[] = {"tt", "code", "kbd", "samp", "pre", "listing", "plaintext", "xmp"};
constexpr const char* withOwnSize[] = {"small", "big", "sub", "sup", "h1", "h2", "h3", "h4", "h5", "h6"};

// Without a document type, tables don't take size, weight and colour of the text around them.
bool ResetsFont(const Node* element) {
  return element->tag() == Known().table && element->tree() && element->tree()->quirks();
}

// The weight that the element's style gives: below 0 none, 0 normal, 1 bold.
int StyledWeight(const Node* element) {
  const QString weight = StyleValue(element, QStringLiteral("font-weight"));
  if (weight.isEmpty()) return -1;
  if (weight == u"bold" || weight == u"bolder") return 1;
  if (weight == u"normal" || weight == u"lighter" || weight == u"initial") return 0;
  bool isNumber = false;
  const int number = weight.toInt(&isNumber);
  return isNumber ? number >= 600 : -1;
}

}  // namespace

QString FontAttribute(FontProperty property) {
  switch (property) {
    case FontProperty::Color:
      return QStringLiteral("color");
    case FontProperty::Face:
      return QStringLiteral("face");
    case FontProperty::Size:
      return QStringLiteral("size");
    case FontProperty::Background:
      break;
  }
  return {};
}

QString StyleProperty(FontProperty property) {
  switch (property) {
    case FontProperty::Color:
      return QStringLiteral("color");
    case FontProperty::Face:
      return QStringLiteral("font-family");
    case FontProperty::Size:
      return QStringLiteral("font-size");
    case FontProperty::Background:
      break;
  }
  return QStringLiteral("background-color");
}

QString StyleValue(const Node* element, const QString& property) {
  const Attribute* const style = element->FindAttribute(QStringLiteral("style"));
  const bool isOfFont = property.startsWith(u"font-");  // the shorthand may tell it
  if (!style || !style->value.contains(isOfFont ? QStringLiteral("font") : property, Qt::CaseInsensitive)) return {};
  return StyleDeclarations::Parse(style->value, !element->tree() || element->tree()->quirks()).Value(property);
}

bool Overrides(const Node* element, FontProperty property) {
  if (!StyleValue(element, StyleProperty(property)).isEmpty()) return true;
  switch (property) {
    case FontProperty::Color:
      return ResetsFont(element) || element->tag()->localName == u"mark" ||
             (element->tag() == Known().a && element->FindAttribute(QStringLiteral("href")));
    case FontProperty::Face:
      return IsOneOf(element, withOwnFace);
    case FontProperty::Size:
      return ResetsFont(element) || IsOneOf(element, withOwnSize);
    case FontProperty::Background:
      return element->tag()->localName == u"mark" || !StyleValue(element, QStringLiteral("background")).isEmpty();
  }
  return false;
}

bool HasBoldStyle(const Node* element) {
  return StyledWeight(element) == 1;
}

bool IsBoldElement(const Node* element) {
  return element->tag() == Known().b || element->tag() == Known().strong;
}

bool SetsWeight(const Node* element) {
  return IsBoldElement(element) || IsOneOf(element, headings) || ResetsFont(element) || StyledWeight(element) >= 0;
}

bool IsBold(const Node* node) {
  for (; node && (!node->IsElement() || !SetsWeight(node)); node = node->parent()) {
  }
  if (!node) return false;
  const int styled = StyledWeight(node);
  return styled >= 0 ? styled == 1 : !ResetsFont(node);
}

QString CssColor(const QString& value) {
  static const QRegularExpression digits(QStringLiteral("^#([0-9a-f]{3}|[0-9a-f]{6})$"),
                                         QRegularExpression::CaseInsensitiveOption);
  static const QRegularExpression function(QStringLiteral("^rgba?\\(\\s*([+-]?\\d+)\\s*[, ]\\s*([+-]?\\d+)\\s*[, "
                                                          "]\\s*([+-]?\\d+)\\s*(?:[,/]\\s*(\\d*\\.?\\d+)\\s*)?\\)$"),
                                           QRegularExpression::CaseInsensitiveOption);
  const QString text = value.trimmed();
  const auto isLetter = [](QChar c) { return c.unicode() < 128 && c.isLetter(); };
  if (!text.isEmpty() && std::all_of(text.begin(), text.end(), isLetter)) {
    const bool isName = text.compare(u"rebeccapurple", Qt::CaseInsensitive) == 0 || QColor(text).isValid();
    return isName ? NormalizeLegacyColor(text) : QString();
  }
  if (digits.match(text).hasMatch()) return NormalizeLegacyColor(text);
  const auto match = function.match(text);
  if (!match.hasMatch()) return {};
  if (!match.captured(4).isEmpty() && match.captured(4).toDouble() < 1) return {};
  const auto part = [&](int index) { return int(std::clamp(match.captured(index).toDouble(), 0.0, 255.0)); };
  return QColor(part(1), part(2), part(3)).name().toUpper();
}

QString FontSizeDigit(const QString& value) {
  static const QRegularExpression number(QStringLiteral("^\\s*([+-]?)((?:\\d+\\.?\\d*|\\.\\d+)(?:e[+-]?\\d+)?)\\s*$"),
                                         QRegularExpression::CaseInsensitiveOption);
  const auto match = number.match(value);
  if (!match.hasMatch()) return {};
  constexpr double normal = 3;
  constexpr double largest = 7;
  const double size = std::trunc(match.captured(2).toDouble());  // infinite where a double ends
  const QString sign = match.captured(1);
  const double result = sign == u"+" ? normal + size : sign == u"-" ? normal - size : size;
  return QString::number(int(std::clamp(result, 1.0, largest)));
}
