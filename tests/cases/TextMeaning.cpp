#include "TextMeaning.h"

#include <algorithm>
#include <cmath>

#include "HTMLDocument.h"

namespace {

bool IsWhiteSpace(const QString& text) {
  return text == u" " || text == u"\t" || text == u"\n" || text == u"\r" || text == u"\f";
}

bool Collapses(const ReadCharacter& character) {
  return character.isText && !character.style.keepsSpace && IsWhiteSpace(character.text);
}

// Where a line starts anew behind (or ends before) the character.
bool EndsLine(const ReadCharacter& character) {
  return character.text == u"<BR>" || (character.style.keepsSpace && character.text == u"\n");
}

class Reader {
 public:
  explicit Reader(bool quirks) : quirks_(quirks) {}

  void Read(const Node* element, const EffectiveStyle& around) {
    if (element->tag()->isHidden) return;
    const EffectiveStyle style = StyleInside(element, around, quirks_);
    const bool isRule = element->tag()->localName == u"hr";
    if (style.isBlock || isRule) EdgeOfBlock();
    if (element->tag() == Known().br || element->tag()->isAtomic)
      line_.push_back({u'<' + element->tag()->tagName + u'>', false, true, style});
    for (const Node* child = element->firstChild(); child; child = child->next()) {
      if (child->IsText()) Text(child->data(), style);
      if (child->IsElement()) Read(child, style);
    }
    if (style.isBlock || isRule) EdgeOfBlock();
  }

  std::vector<ReadCharacter> Finish() {
    EdgeOfBlock();
    return std::move(all_);
  }

 private:
  void Text(const QString& text, const EffectiveStyle& style) {
    for (qsizetype i = 0; i < text.size(); ++i) {
      const bool isPair = text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
      line_.push_back({text.mid(i, isPair ? 2 : 1), true, true, style});
      if (isPair) ++i;
    }
  }

  // What stands between two edges is laid out for itself: of white space in a row the first shows, and none at the
  // start and the end of a line.
  void EdgeOfBlock() {
    if (!std::all_of(line_.begin(), line_.end(), Collapses)) {
      bool swallows = true;
      for (ReadCharacter& character : line_) {
        if (Collapses(character)) {
          character.shows = !swallows;
          swallows = true;
        } else {
          swallows = EndsLine(character);
        }
      }
      bool atEnd = true;
      for (auto character = line_.rbegin(); character != line_.rend(); ++character) {
        if (!Collapses(*character)) {
          atEnd = EndsLine(*character);
        } else if (atEnd) {
          character->shows = false;
        }
      }
      all_.insert(all_.end(), line_.begin(), line_.end());
    }
    line_.clear();
  }

  bool quirks_;
  std::vector<ReadCharacter> line_;
  std::vector<ReadCharacter> all_;
};

// The style that BODY gets from the elements around it.
EffectiveStyle StyleAround(const Node* element, bool quirks) {
  if (!element->parent() || !element->parent()->IsElement()) return InitialStyle();
  return StyleInside(element->parent(), StyleAround(element->parent(), quirks), quirks);
}

QString Joined(const std::vector<ReadCharacter>& characters) {
  QString text;
  for (const ReadCharacter& character : characters) text += character.text;
  return text;
}

struct Property {
  const char* name;
  QString (*value)(const EffectiveStyle&);
};

const Property properties[] = {
    {"bold", [](const EffectiveStyle& style) { return QString(style.IsBold() ? "yes" : "no"); }},
    {"face", [](const EffectiveStyle& style) { return style.face; }},
    {"size", [](const EffectiveStyle& style) { return QString::number(std::round(style.size * 100) / 100) + "px"; }},
    {"colour", [](const EffectiveStyle& style) { return style.color; }},
    {"link", [](const EffectiveStyle& style) { return style.link; }},
};

}  // namespace

std::vector<ReadCharacter> ReadText(const HTMLDocument& document) {
  const Node* const root = document.tree().bodyNode() ? document.tree().bodyNode() : document.tree().htmlNode();
  if (!root) return {};
  Reader reader(document.tree().quirks());
  reader.Read(root, StyleAround(root, document.tree().quirks()));
  return reader.Finish();
}

QStringList MeaningDifferences(const HTMLDocument& got, const HTMLDocument& wanted) {
  const std::vector<ReadCharacter> ours = ReadText(got);
  const std::vector<ReadCharacter> theirs = ReadText(wanted);
  const bool sameText = std::equal(
      ours.begin(), ours.end(), theirs.begin(), theirs.end(),
      [](const ReadCharacter& a, const ReadCharacter& b) { return a.text == b.text && a.isText == b.isText; });
  if (!sameText) return {QStringLiteral("characters: wanted \"%1\", got \"%2\"").arg(Joined(theirs), Joined(ours))};

  QStringList differences;
  for (const Property& property : properties) {
    std::size_t at = 0;
    while (at < ours.size()) {
      const auto pairAt = [&](std::size_t i) {
        if (!ours[i].isText || (!ours[i].shows && !theirs[i].shows)) return std::pair<QString, QString>();
        return std::pair(property.value(theirs[i].style), property.value(ours[i].style));
      };
      const auto [expected, found] = pairAt(at);
      const std::size_t from = at;
      QString stretch;
      while (at < ours.size() && pairAt(at) == std::pair(expected, found)) stretch += ours[at++].text;
      if (expected == found) continue;
      differences.append(QStringLiteral("%1 of \"%2\" at %3: wanted \"%4\", got \"%5\"")
                             .arg(QLatin1String(property.name), stretch)
                             .arg(from)
                             .arg(expected, found));
    }
  }
  return differences;
}
