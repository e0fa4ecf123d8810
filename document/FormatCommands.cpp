#include "FormatCommands.h"

#include <algorithm>
#include <unordered_set>

#include "FontSizeMap.h"
#include "FormatRuns.h"
#include "Gateway.h"
#include "LegacyColor.h"
#include "StyleDeclarations.h"
#include "TextStyle.h"
#include "TextWalker.h"
#include "TreeBuilder.h"

namespace {

const QString styleName = QStringLiteral("style");
const QString hrefName = QStringLiteral("href");

bool IsLink(const Node* node) {
  return node->tag() == Known().a;
}
bool IsFont(const Node* node) {
  return node->tag() == Known().font;
}

// One command at work on one range.
class Formatter {
 public:
  Formatter(Gateway& gateway, LiveRange& range) : gateway_(gateway), span_(gateway.tree(), CutOut(gateway, range)) {
    NoteSeam(range.start.container);
    NoteSeam(range.end.container);
    texts_ = ShownTexts(*span_);
  }

  // Texts that were cut, or that an element stood between, become one again.
  ~Formatter() {
    for (const NodeRef& seam : seams_) {
      const Node* text = seam.get();
      if (!text->IsAttached()) continue;
      if (text->previous() && text->previous()->IsText()) text = text->previous();
      while (text->next() && text->next()->IsText()) gateway_.JoinWithNext(text);
    }
  }
  Formatter(const Formatter&) = delete;
  Formatter& operator=(const Formatter&) = delete;

  bool SetFont(FontProperty property, const QString& value) {
    if (texts_.empty()) return false;
    std::vector<const Node*> inner = SetFontBetween(*span_, property, value);
    // What a FONT around has no effect on gets one inside.
    while (!inner.empty()) {
      const Node* const element = inner.back();
      inner.pop_back();
      for (const Node* more :
           SetFontBetween({BoundaryPoint::AtStart(element), BoundaryPoint::AtEnd(element)}, property, value))
        inner.push_back(more);
    }
    return true;
  }

  bool ToggleBold() {
    if (texts_.empty()) return false;
    if (std::all_of(texts_.begin(), texts_.end(), IsBold)) {
      MakeNormal();
    } else {
      WrapInBold(*span_, [](const Node*) { return true; });
    }
    return true;
  }

  bool Link(const QString& address) {
    const auto isTaken = [](const Node* node) {
      if (!IsInline(node)) return node->IsText() ? Taking::Skip : Taking::Enter;
      if (!node->IsElement()) return Taking::Join;
      if (IsLink(node)) return ShowsSomething(node) ? Taking::Single : Taking::Skip;
      if (node->tag()->isAtomic) return Taking::Join;
      // The link goes inside FONT and B.
      const bool parts =
          Holds(node, [](const Node* inside) { return IsFont(inside) || IsBoldElement(inside) || IsLink(inside); });
      return parts ? Taking::Enter : Taking::Join;
    };
    if (CollectRuns(*span_, isTaken).empty()) return false;
    SplitLinksAt(span_->start.container, isTaken);
    SplitLinksAt(span_->end.container, isTaken);
    for (const Run& run : CollectRuns(*span_, isTaken)) {
      if (run.single) {
        gateway_.SetAttribute(run.first, hrefName, address);
      } else {
        WrapIn(run, Known().a, {{hrefName, address}});
      }
    }
    return true;
  }

 private:
  void NoteSeam(const Node* node) {
    if (node && node->IsText()) seams_.emplace_back(node);
  }

  const Node* WrapIn(const Run& run, const Tag* tag, const std::vector<Attribute>& attributes) {
    Node* const wrapper = TreeBuilder::Element(tag, attributes);
    gateway_.Wrap(run.first, run.last, wrapper);
    return wrapper;
  }

  void Unwrap(const Node* element) {
    NoteSeam(element->previous());
    NoteSeam(element->next());
    NoteSeam(element->firstChild());
    NoteSeam(element->lastChild());
    gateway_.Unwrap(element);
  }

  // The value comes last, so that no other declaration takes it back.
  void SetStyle(const Node* element, const QString& property, const QString& value) {
    const Attribute* const attribute = element->FindAttribute(styleName);
    StyleDeclarations style =
        StyleDeclarations::Parse(attribute ? attribute->value : QString(), gateway_.tree().quirks());
    style.Set(property, {});
    style.Set(property, value);
    if (style.Text().isEmpty()) {
      gateway_.RemoveAttribute(element, styleName);
    } else {
      gateway_.SetAttribute(element, styleName, style.Text());
    }
  }

  void ClearStyle(const Node* element, const QString& property) {
    if (!StyleValue(element, property).isEmpty()) SetStyle(element, property, {});
  }

  void Clear(const Node* element, FontProperty property) {
    const QString attribute = FontAttribute(property);
    if (IsFont(element) && !attribute.isEmpty()) gateway_.RemoveAttribute(element, attribute);
    ClearStyle(element, StyleProperty(property));
  }

  void Set(const Node* font, FontProperty property, const QString& value) {
    if (property == FontProperty::Background) {
      SetStyle(font, StyleProperty(property), value);
    } else {
      ClearStyle(font, StyleProperty(property));
      gateway_.SetAttribute(font, FontAttribute(property), value);
    }
  }

  // Gives every run a FONT with the value. Returns the elements inside whose text doesn't get it from there.
  std::vector<const Node*> SetFontBetween(const LiveRange& between, FontProperty property, const QString& value) {
    const auto isTaken = [&](const Node* node) {
      if (!IsInline(node)) return node->IsText() ? Taking::Skip : Taking::Enter;
      if (!node->IsElement()) return Taking::Join;
      // Nothing goes into a list of choices, where a parser would leave it out.
      if (node->tag()->isAtomic) return Taking::Join;
      // A background shows behind the lines of the FONT itself, not behind blocks in it.
      if (IsFont(node)) {
        const bool asWhole = property != FontProperty::Background || !Holds(node, [](const Node*) { return false; });
        return asWhole ? Taking::Single : Taking::Enter;
      }
      return Holds(node, IsFont) ? Taking::Enter : Taking::Join;
    };
    std::vector<const Node*> overriding;
    for (const Run& run : CollectRuns(between, isTaken)) {
      const Node* font = run.first;
      if (run.single) {
        Set(font, property, value);
        if (property != FontProperty::Background && Overrides(font, property)) overriding.push_back(font);
      } else {
        font = WrapIn(run, Known().font, FontWith(property, value));
      }
      for (const Node* node = NextInTree(font, font); node;) {
        const Node* following = NextInTree(node, font);
        if (node->IsElement()) {
          Clear(node, property);
          if (Overrides(node, property)) {
            overriding.push_back(node);
            following = NextSkippingChildren(node, font);  // its inside follows for itself
          }
        }
        node = following;
      }
    }
    return overriding;
  }

  static std::vector<Attribute> FontWith(FontProperty property, const QString& value) {
    if (property != FontProperty::Background) return {{FontAttribute(property), value}};
    return {{styleName, StyleProperty(property) + QStringLiteral(": ") + value + u';'}};
  }

  // Runs of text of which each is wanted and whose weight isn't settled inside.
  static std::vector<Run> WeightRuns(const LiveRange& between, const std::function<bool(const Node*)>& isWanted) {
    return CollectRuns(between, [&](const Node* node) {
      if (!IsInline(node)) return node->IsText() ? Taking::Skip : Taking::Enter;
      if (node->IsText()) return isWanted(node) || !ShowsOnPage(node) ? Taking::Join : Taking::Skip;
      if (!node->IsElement() || node->tag()->isAtomic) return Taking::Join;
      const bool parts = Holds(node, [](const Node* inside) { return IsFont(inside) || SetsWeight(inside); });
      if (parts) return Taking::Enter;
      for (const Node* inside = node; inside; inside = NextInTree(inside, node))
        if (inside->IsText() && !isWanted(inside) && ShowsOnPage(inside)) return Taking::Enter;
      return Taking::Join;
    });
  }

  void WrapInBold(const LiveRange& between, const std::function<bool(const Node*)>& isWanted) {
    for (const Run& run : WeightRuns(between, [&](const Node* text) { return isWanted(text) && !IsBold(text); }))
      WrapIn(run, Known().b, {});
  }

  // All texts are bold. B and STRONG go; what they made bold outside of the range gets a B of its own, and what is
  // still bold by something else is made normal.
  void MakeNormal() {
    const auto outermost = [](const Node* from) {
      const Node* found = nullptr;
      for (const Node* node = from; node; node = node->parent())
        if (node->IsElement() && IsBoldElement(node)) found = node;
      return found;
    };
    const Node* const first = outermost(span_->start.container);
    const Node* const last = outermost(span_->end.container);
    const BoundaryPoint none = span_->start;
    const TrackedRange before(gateway_.tree(), {first ? BoundaryPoint::AtStart(first) : none, span_->start});
    const TrackedRange behind(gateway_.tree(), {span_->end, last ? BoundaryPoint::AtEnd(last) : span_->end});
    std::unordered_set<const Node*> bold;
    for (const TrackedRange* outside : {&before, &behind})
      for (const Node* text : ShownTexts(**outside))
        if (IsBold(text)) bold.insert(text);

    std::unordered_set<const Node*> seen;
    std::vector<const Node*> elements;
    for (const Node* text : texts_)
      for (const Node* node = text->parent(); node && node->IsElement() && seen.insert(node).second;
           node = node->parent())
        if (IsBoldElement(node) || HasBoldStyle(node)) elements.push_back(node);
    for (const Node* element : elements) {
      const bool covered = !element->Contains(span_->start.container) && !element->Contains(span_->end.container);
      if (covered) ClearStyle(element, QStringLiteral("font-weight"));
      if (!IsBoldElement(element)) continue;
      if (!element->attributes().empty()) {
        const std::vector<Attribute> attributes = element->attributes();
        WrapIn({element->firstChild(), element->lastChild(), false}, Tag::Of(QStringLiteral("span")), attributes);
      }
      Unwrap(element);
    }
    for (const TrackedRange* outside : {&before, &behind})
      WrapInBold(**outside, [&](const Node* text) { return bold.contains(text); });
    for (const Run& run : WeightRuns(*span_, [](const Node* text) { return IsBold(text); }))
      WrapIn(run, Tag::Of(QStringLiteral("span")), {{styleName, QStringLiteral("font-weight: normal;")}});
  }

  // Ends every link around the place there; what lies outside of the range keeps its address.
  void SplitLinksAt(const Node* place, const Classifier& isTaken) {
    for (const Node* node = place; node;) {
      const Node* const link = node;
      node = node->parent();
      if (!IsLink(link)) continue;
      std::vector<Attribute> attributes = link->attributes();
      const bool holdsStart = link->Contains(span_->start.container);
      const bool holdsEnd = link->Contains(span_->end.container);
      const TrackedRange before(gateway_.tree(),
                                {holdsStart ? BoundaryPoint::AtStart(link) : span_->start, span_->start});
      const TrackedRange behind(gateway_.tree(), {span_->end, holdsEnd ? BoundaryPoint::AtEnd(link) : span_->end});
      Unwrap(link);
      for (const TrackedRange* outside : {&before, &behind})
        for (const Run& run : CollectRuns(**outside, isTaken)) {
          if (run.single) continue;
          WrapIn(run, Known().a, attributes);
          // A name is that of one place.
          std::erase_if(attributes, [](const Attribute& one) { return one.name == u"name" || one.name == u"id"; });
        }
    }
  }

  Gateway& gateway_;

  TrackedRange span_;
  std::vector<const Node*> texts_;
  std::vector<NodeRef> seams_;
};

// "" for a value that the property can't have.
QString Normalized(FontProperty property, const QString& value) {
  switch (property) {
    case FontProperty::Color:
    case FontProperty::Background:
      return CssColor(value);
    case FontProperty::Size:
      return FontSizeDigit(value);
    case FontProperty::Face:
      break;
  }
  return value;
}

QString WithoutQuotes(QString face) {
  return face.remove(u'"').remove(u'\'').trimmed();
}

QString AttributeValue(const Node* element, const QString& name) {
  const Attribute* const attribute = element->FindAttribute(name);
  return attribute ? attribute->value : QString();
}

// What a FONT says of the property; "" when it says nothing.
QString ToldByFont(const Node* font, FontProperty property) {
  switch (property) {
    case FontProperty::Color:
      return NormalizeLegacyColor(AttributeValue(font, FontAttribute(property)));
    case FontProperty::Face:
      return WithoutQuotes(AttributeValue(font, FontAttribute(property)));
    case FontProperty::Size:
      return FontSizeDigit(AttributeValue(font, FontAttribute(property)));
    case FontProperty::Background:
      break;
  }
  return CssColor(StyleValue(font, StyleProperty(property)));
}

QString TellFont(const PageTree& tree, const BoundaryPoint& at, FontProperty property) {
  bool inLink = false;
  for (const Node* node = at.container; node; node = node->parent()) {
    inLink = inLink || IsLink(node);
    if (!IsFont(node)) continue;
    const QString told = ToldByFont(node, property);
    if (!told.isEmpty()) return told;
  }
  const Node* const body = tree.bodyNode();
  const auto color = [&](const char* attribute) {
    return body ? NormalizeLegacyColor(AttributeValue(body, QLatin1String(attribute))) : QString();
  };
  const auto style = [&](const char* declared) { return body ? StyleValue(body, QLatin1String(declared)) : QString(); };
  QString value;
  switch (property) {
    case FontProperty::Color:
      if (inLink) value = color("link");
      if (value.isEmpty()) value = color("text");
      return value.isEmpty() ? QStringLiteral("#000000") : value;
    case FontProperty::Face:
      value = WithoutQuotes(style("font-family"));
      return value.isEmpty() ? QStringLiteral("Times New Roman") : value;
    case FontProperty::Size:
      value = style("font-size");
      return value.isEmpty() ? QStringLiteral("3") : FontSizeMap(value);
    case FontProperty::Background:
      for (const Node* node = at.container; node && value.isEmpty(); node = node->parent())
        if (node->IsElement(Known().td) || node->IsElement(Known().table) || node->IsElement(Known().body))
          value = NormalizeLegacyColor(AttributeValue(node, QStringLiteral("bgcolor")));
      return value.isEmpty() ? QStringLiteral("#FFFFFF") : value;
  }
  return {};
}

bool PlayFont(Gateway& gateway, LiveRange& range, FontProperty property, const QString& value) {
  // A page that gives no colour for its text has one that shows all the same.
  const bool isColor = property == FontProperty::Color || property == FontProperty::Background;
  const QString given = value.isEmpty() && isColor ? TellFont(gateway.tree(), range.start, property) : value;
  const QString normal = Normalized(property, given);
  return !normal.isEmpty() && Formatter(gateway, range).SetFont(property, normal);
}

// A command plays on a range that isn't collapsed, and some tell what they would find at a place.
struct FormatCommand {
  const char* name;
  bool (*play)(Gateway& gateway, LiveRange& range, const QString& value);
  QString (*tell)(const PageTree& tree, const BoundaryPoint& at);
};

template <FontProperty property>
constexpr FormatCommand FontCommand(const char* name) {
  return {name,
          [](Gateway& gateway, LiveRange& range, const QString& value) {
            return PlayFont(gateway, range, property, value);
          },
          [](const PageTree& tree, const BoundaryPoint& at) { return TellFont(tree, at, property); }};
}

QString TellNothing(const PageTree&, const BoundaryPoint&) {
  return {};
}

constexpr FormatCommand commands[] = {
    FontCommand<FontProperty::Color>("ForeColor"),
    FontCommand<FontProperty::Background>("BackColor"),
    FontCommand<FontProperty::Face>("FontName"),
    FontCommand<FontProperty::Size>("FontSize"),
    {"Bold", [](Gateway& gateway, LiveRange& range, const QString&) { return Formatter(gateway, range).ToggleBold(); },
     TellNothing},
    {"CreateLink",
     [](Gateway& gateway, LiveRange& range, const QString& value) {
       return !value.isEmpty() && Formatter(gateway, range).Link(value);
     },
     TellNothing},
};

const FormatCommand* CommandCalled(const QString& name) {
  for (const FormatCommand& command : commands)
    if (name.compare(QLatin1String(command.name), Qt::CaseInsensitive) == 0) return &command;
  return nullptr;
}

}  // namespace

bool ExecCommand(Gateway& gateway, LiveRange& range, const QString& name, const QString& value) {
  const FormatCommand* const command = CommandCalled(name);
  if (!command || range.IsCollapsed() || !gateway.tree().bodyNode()) return false;
  return command->play(gateway, range, value);
}

QString QueryCommandValue(const PageTree& tree, const BoundaryPoint& at, const QString& name) {
  const FormatCommand* const command = CommandCalled(name);
  return command ? command->tell(tree, at) : QString();
}
