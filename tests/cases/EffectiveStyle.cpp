#include "EffectiveStyle.h"

#include <QColor>
#include <QRegularExpression>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "LegacyColor.h"
#include "Node.h"

namespace {

constexpr int normalWeight = 400;
constexpr int boldWeight = 700;
constexpr double mediumSize = 16;
constexpr double stepOfSize = 1.2;                            // "larger" and "smaller"
constexpr double fontSizes[] = {10, 13, 16, 18, 24, 32, 48};  // FONT SIZE 1 to 7

QRegularExpression Pattern(const char* pattern) {
  return QRegularExpression(QLatin1String(pattern), QRegularExpression::CaseInsensitiveOption);
}

bool IsInitial(const QString& word) {
  return word == u"initial" || word == u"revert";
}

bool IsInherit(const QString& word) {
  return word == u"inherit" || word == u"unset";
}

struct Declaration {
  QString property;  // lower case
  QString value;     // trimmed
  bool important = false;
};

// Cuts at `separator` where no quotes and brackets are open.
QStringList CutOutside(const QString& text, QChar separator) {
  QStringList parts(QString{});
  QChar quote;
  int brackets = 0;
  for (const QChar c : text) {
    if (!quote.isNull()) {
      if (c == quote) quote = QChar();
    } else if (c == u'"' || c == u'\'') {
      quote = c;
    } else if (c == u'(') {
      ++brackets;
    } else if (c == u')') {
      --brackets;
    } else if (c == separator && brackets <= 0) {
      parts.append(QString());
      continue;
    }
    parts.last() += c;
  }
  return parts;
}

// Ordered so that what comes later wins.
std::vector<Declaration> DeclarationsOf(const Node* element) {
  std::vector<Declaration> declarations;
  const Attribute* const style = element->FindAttribute(QStringLiteral("style"));
  if (!style) return declarations;
  static const QRegularExpression comment(QStringLiteral("/\\*.*?\\*/"),
                                          QRegularExpression::DotMatchesEverythingOption);
  static const QRegularExpression important = Pattern("\\s*!\\s*important$");
  for (const QString& part : CutOutside(QString(style->value).remove(comment), u';')) {
    const qsizetype colon = part.indexOf(u':');
    if (colon < 0) continue;
    Declaration one{part.left(colon).trimmed().toLower(), part.mid(colon + 1).trimmed()};
    one.important = one.value.contains(important);
    if (one.important) one.value.remove(important);
    if (!one.value.isEmpty()) declarations.push_back(one);
  }
  std::stable_partition(declarations.begin(), declarations.end(), [](const Declaration& d) { return !d.important; });
  return declarations;
}

// The readers of values give nothing for a value that CSS refuses.

std::optional<int> WeightOf(const QString& value, int around) {
  const QString word = value.toLower();
  if (word == u"normal" || IsInitial(word)) return normalWeight;
  if (word == u"bold") return boldWeight;
  if (IsInherit(word)) return around;
  if (word == u"bolder") return around < 350 ? normalWeight : around < 550 ? boldWeight : std::max(around, 900);
  if (word == u"lighter") return around < 550 ? std::min(around, 100) : around < 750 ? normalWeight : boldWeight;
  bool isNumber = false;
  const double number = word.toDouble(&isNumber);
  if (!isNumber || number < 1 || number > 1000) return std::nullopt;
  return int(number);
}

QString FamiliesOf(const QString& value) {
  QStringList families;
  for (const QString& part : CutOutside(value, u',')) {
    QString family = part.trimmed();
    if (family.size() >= 2 && (family[0] == u'"' || family[0] == u'\'') && family.back() == family[0])
      family = family.mid(1, family.size() - 2);
    family = family.simplified().toLower();
    if (family.isEmpty()) return {};
    families.append(family);
  }
  return families.join(u',');
}

std::optional<QString> FaceOf(const QString& value, const QString& around) {
  const QString word = value.toLower();
  if (IsInherit(word)) return around;
  if (IsInitial(word)) return QString();
  static const QRegularExpression bare = Pattern("^\\s*-?[a-z_\\x{80}-\\x{10ffff}][-\\w\\s\\x{80}-\\x{10ffff}]*$");
  for (const QString& part : CutOutside(value, u',')) {
    const QString family = part.trimmed();
    const bool quoted = family.startsWith(u'"') || family.startsWith(u'\'');
    if (!quoted && !bare.match(family).hasMatch()) return std::nullopt;
  }
  const QString families = FamiliesOf(value);
  if (families.isEmpty()) return std::nullopt;
  return families;
}

std::optional<double> SizeOf(const QString& value, double around, double root, bool bareNumbers) {
  static const std::pair<const char*, double> words[] = {
      {"xx-small", 9},         {"x-small", fontSizes[0]}, {"small", fontSizes[1]},    {"medium", fontSizes[2]},
      {"large", fontSizes[3]}, {"x-large", fontSizes[4]}, {"xx-large", fontSizes[5]}, {"xxx-large", fontSizes[6]}};
  const QString word = value.toLower();
  for (const auto& [name, size] : words)
    if (word == QLatin1String(name)) return size;
  if (IsInitial(word)) return mediumSize;
  if (IsInherit(word)) return around;
  if (word == u"larger") return around * stepOfSize;
  if (word == u"smaller") return around / stepOfSize;
  static const QRegularExpression length = Pattern("^\\+?(\\d+|\\d*\\.\\d+)([a-z]*|%)$");
  const auto match = length.match(word);
  if (!match.hasMatch()) return std::nullopt;
  const double number = match.captured(1).toDouble();
  const QString unit = match.captured(2);
  if (unit.isEmpty() && (bareNumbers || number == 0)) return number;
  const std::pair<const char*, double> units[] = {{"px", 1},          {"pt", 96.0 / 72}, {"pc", 16},
                                                  {"in", 96},         {"cm", 96 / 2.54}, {"mm", 96 / 25.4},
                                                  {"q", 96 / 101.6},  {"em", around},    {"ex", around / 2},
                                                  {"ch", around / 2}, {"rem", root},     {"%", around / 100}};
  for (const auto& [name, pixels] : units)
    if (unit == QLatin1String(name)) return number * pixels;
  return std::nullopt;
}

QString WrittenColor(int red, int green, int blue, double alpha) {
  if (alpha <= 0) return QStringLiteral("transparent");
  const QString opaque = QColor(red, green, blue).name();
  return alpha < 1 ? opaque + u'/' + QString::number(alpha, 'f', 3) : opaque;
}

// A part of rgb(): a number or a percentage of `whole`, cut to what is possible.
std::optional<double> ColorPart(const QString& written, double whole) {
  QString text = written.trimmed();
  const bool percent = text.endsWith(u'%');
  if (percent) text.chop(1);
  bool isNumber = false;
  const double number = text.toDouble(&isNumber);
  if (!isNumber) return std::nullopt;
  return std::clamp(percent ? number * whole / 100 : number, 0.0, whole);
}

std::optional<QString> RgbColor(const QString& inside) {
  QStringList parts = inside.contains(u',')
                          ? inside.split(u',')
                          : QString(inside).replace(u'/', QStringLiteral(" ")).simplified().split(u' ');
  if (parts.size() != 3 && parts.size() != 4) return std::nullopt;
  int channels[3] = {};
  for (int i = 0; i < 3; ++i) {
    const auto part = ColorPart(parts[i], 255);
    if (!part) return std::nullopt;
    channels[i] = int(std::lround(*part));
  }
  const auto alpha = parts.size() == 4 ? ColorPart(parts[3], 1) : 1.0;
  if (!alpha) return std::nullopt;
  return WrittenColor(channels[0], channels[1], channels[2], *alpha);
}

std::optional<QString> HexColor(const QString& digits) {
  QString all = digits;
  if (all.size() == 3 || all.size() == 4) {
    all.clear();
    for (const QChar c : digits) all += QString(2, c);
  }
  if (all.size() != 6 && all.size() != 8) return std::nullopt;
  const auto pair = [&](int at) { return all.mid(at, 2).toInt(nullptr, 16); };
  return WrittenColor(pair(0), pair(2), pair(4), all.size() == 8 ? pair(6) / 255.0 : 1);
}

std::optional<QString> ColorOf(const QString& value, const QString& around, bool quirks) {
  const QString word = value.toLower();
  if (IsInherit(word) || word == u"currentcolor") return around;
  if (IsInitial(word)) return QStringLiteral("#000000");
  if (word == u"transparent") return word;
  static const QRegularExpression rgb = Pattern("^rgba?\\((.*)\\)$");
  static const QRegularExpression hex = Pattern("^(#?)([0-9a-f]+)$");
  static const QRegularExpression name = Pattern("^[a-z]+$");
  if (const auto match = rgb.match(word); match.hasMatch()) return RgbColor(match.captured(1));
  if (word == u"rebeccapurple") return QStringLiteral("#663399");
  if (name.match(word).hasMatch() && QColor::isValidColorName(word)) return QColor(word).name();
  const auto match = hex.match(word);
  if (!match.hasMatch()) return std::nullopt;
  const QString digits = match.captured(2);
  const bool bare = match.captured(1).isEmpty();
  if (bare && (!quirks || (digits.size() != 3 && digits.size() != 6))) return std::nullopt;
  return HexColor(digits);
}

// FONT SIZE: 1 to 7, or steps from 3 with a sign. Nothing when no number is there.
std::optional<double> FontSizeAttribute(const QString& value) {
  static const QRegularExpression pattern = Pattern("^[ \\t\\n\\f\\r]*([-+]?)([0-9]+)");
  const auto match = pattern.match(value);
  if (!match.hasMatch()) return std::nullopt;
  bool fits = false;
  int number = match.captured(2).toInt(&fits);
  if (!fits) number = 1000;
  const QString sign = match.captured(1);
  if (sign == u"+") number = 3 + number;
  if (sign == u"-") number = 3 - number;
  return fontSizes[std::clamp(number, 1, 7) - 1];
}

class Cascade {
 public:
  Cascade(const Node* element, const EffectiveStyle& parent, bool quirks)
      : element_(element), parent_(parent), style_(parent), quirks_(quirks) {}

  EffectiveStyle Result() {
    style_.isBlock = element_->tag()->isBlock;
    if (element_->tag()->space == Namespace::Html) {
      TagRules();
      OldAttributes();
    }
    for (const Declaration& declaration : DeclarationsOf(element_)) Apply(declaration);
    if (Is("html")) style_.rootSize = style_.size;
    if (Is("body")) style_.bodyColor = style_.color;
    return style_;
  }

 private:
  template <typename... Names>
  bool Is(Names... names) const {
    return element_->tag()->space == Namespace::Html && ((element_->tag()->localName == QLatin1String(names)) || ...);
  }

  QString Raw(const char* name) const {
    const Attribute* const attribute = element_->FindAttribute(QLatin1String(name));
    return attribute ? attribute->value : QString();
  }

  void TagRules() {
    static const std::pair<const char*, double> headings[] = {{"h1", 2}, {"h2", 1.5}, {"h3", 1.17},
                                                              {"h4", 1}, {"h5", .83}, {"h6", .67}};
    for (const auto& [name, factor] : headings) {
      if (element_->tag()->localName != QLatin1String(name)) continue;
      style_.size = parent_.size * factor;
      style_.weight = boldWeight;
    }
    if (Is("th")) style_.weight = boldWeight;
    if (Is("b", "strong")) style_.weight = std::max(parent_.weight, boldWeight);
    if (Is("big")) style_.size = parent_.size * stepOfSize;
    if (Is("small", "sub", "sup")) style_.size = parent_.size / stepOfSize;
    if (Is("rt")) style_.size = parent_.size / 2;
    if (Is("tt", "code", "kbd", "samp", "pre", "listing", "xmp", "plaintext"))
      style_.face = QStringLiteral("monospace");
    if (Is("pre", "listing", "xmp", "plaintext", "textarea")) style_.keepsSpace = true;
    if (Is("mark")) style_.color = QStringLiteral("#000000");
    if (Is("a") && element_->FindAttribute(QStringLiteral("href"))) {
      style_.color = parent_.linkColor;
      style_.link = Raw("href");
    }
    if (quirks_ && Is("table")) {
      style_.weight = normalWeight;
      style_.size = mediumSize;
      style_.color = parent_.bodyColor;
      style_.keepsSpace = false;
    }
  }

  void LegacyColor(const char* attribute, QString& color) const {
    const QString legacy = NormalizeLegacyColor(Raw(attribute));
    if (!legacy.isEmpty()) color = legacy.toLower();
  }

  void OldAttributes() {
    if (Is("body")) {
      LegacyColor("text", style_.color);
      LegacyColor("link", style_.linkColor);
    }
    if (!Is("font")) return;
    LegacyColor("color", style_.color);
    if (const QString families = FamiliesOf(Raw("face")); !families.isEmpty()) style_.face = families;
    if (const auto size = FontSizeAttribute(Raw("size"))) style_.size = *size;
  }

  void Apply(const Declaration& declaration) {
    const QString& property = declaration.property;
    const QString& value = declaration.value;
    if (property == u"font-weight") {
      style_.weight = WeightOf(value, parent_.weight).value_or(style_.weight);
    } else if (property == u"font-family") {
      style_.face = FaceOf(value, parent_.face).value_or(style_.face);
    } else if (property == u"font-size") {
      style_.size = SizeOf(value, parent_.size, parent_.rootSize, quirks_).value_or(style_.size);
    } else if (property == u"color") {
      style_.color = ColorOf(value, parent_.color, quirks_).value_or(style_.color);
    } else if (property == u"font") {
      Shorthand(value);
    } else if (property == u"display") {
      const QString word = value.toLower();
      static const QRegularExpression block = Pattern("^(block|list-item|flex|grid|flow-root|table.*)$");
      static const QRegularExpression inLine = Pattern("^(inline.*|contents)$");
      if (block.match(word).hasMatch()) style_.isBlock = true;
      if (inLine.match(word).hasMatch()) style_.isBlock = false;
    } else if (property == u"white-space") {
      const QString word = value.toLower();
      if (word == u"pre" || word == u"pre-wrap" || word == u"break-spaces") style_.keepsSpace = true;
      if (word == u"normal" || word == u"nowrap" || word == u"pre-line" || IsInitial(word)) style_.keepsSpace = false;
      if (IsInherit(word)) style_.keepsSpace = parent_.keepsSpace;
    }
  }

  // Style, variant and weight in any order, then the size with the height of a line, then the families.
  void Shorthand(const QString& value) {
    const QString whole = value.toLower();
    if (IsInherit(whole) || IsInitial(whole)) {
      for (const char* part : {"font-weight", "font-family", "font-size"}) Apply({QLatin1String(part), whole});
      return;
    }
    static const QRegularExpression slash(QStringLiteral("\\s*/\\s*"));
    const QStringList words = value.simplified().replace(slash, QStringLiteral("/")).split(u' ');
    int weight = normalWeight;
    for (qsizetype i = 0; i + 1 < words.size(); ++i) {
      const QString word = words[i].toLower();
      if (word == u"normal" || word == u"italic" || word == u"oblique" || word == u"small-caps") continue;
      if (const auto size = SizeOf(word.section(u'/', 0, 0), parent_.size, parent_.rootSize, false)) {
        const auto face = FaceOf(words.mid(i + 1).join(u' '), parent_.face);
        if (!face) return;
        style_.weight = weight;
        style_.size = *size;
        style_.face = *face;
        return;
      }
      const auto known = WeightOf(word, parent_.weight);
      if (!known) return;
      weight = *known;
    }
  }

  const Node* element_;
  const EffectiveStyle& parent_;
  EffectiveStyle style_;
  bool quirks_;
};

}  // namespace

EffectiveStyle InitialStyle() {
  EffectiveStyle style;
  style.color = style.bodyColor = QStringLiteral("#000000");
  style.linkColor = QStringLiteral("#0000ff");
  return style;
}

EffectiveStyle StyleInside(const Node* element, const EffectiveStyle& parent, bool quirks) {
  return Cascade(element, parent, quirks).Result();
}
