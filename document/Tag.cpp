#include "Tag.h"

#include <QHash>
#include <memory>
#include <utility>

#include "AsciiText.h"

namespace {

enum Trait {
  Void = 1,
  RawText = 2,
  Hidden = 4,
  Atomic = 8,
  Block = 16,
  TablePart = 32,
  HoldsText = 64,
  DropsLineEnd = 128,
  Scope = 256,
  EndsByItself = 512,
  OfTable = 1024
};

struct TraitRow {
  const char* names;
  int traits;
};

constexpr TraitRow traitRows[] = {
    {"area base basefont bgsound br col embed frame hr img input keygen link meta param source track wbr", Void},
    {"style script xmp iframe noembed noframes plaintext", RawText},
    {"head title style script noembed noframes template meta link base datalist", Hidden},
    {"img hr input object iframe embed applet select textarea button video audio canvas meter progress keygen", Atomic},
    {"address article aside blockquote center dd details dialog dir div dl dt fieldset figcaption figure footer form "
     "h1 h2 h3 h4 h5 h6 header hgroup legend li listing main menu nav p plaintext pre section summary xmp caption td "
     "th body",
     Block | HoldsText},
    {"ol ul optgroup option", Block},
    {"table tbody thead tfoot tr", Block | TablePart},
    {"colgroup col", Hidden},
    {"pre listing textarea", DropsLineEnd},
    {"applet caption html table td th marquee object template", Scope},
    {"dd dt li p option rb rp optgroup rt rtc", EndsByItself},
    {"caption colgroup col tbody thead tfoot tr td th style script template input form table", OfTable},
};

struct OpeningRow {
  const char* names;
  Opening opening;
};

constexpr OpeningRow openingRows[] = {
    {"a", Opening::Link},
    {"nobr", Opening::Nobr},
    {"address article aside blockquote center details dialog dir div dl fieldset figcaption figure footer form header "
     "hgroup hr listing main menu nav ol p plaintext pre search section summary ul xmp",
     Opening::Block},
    {"h1 h2 h3 h4 h5 h6", Opening::Heading},
    {"li", Opening::Item},
    {"dd dt", Opening::Term},
    {"button", Opening::Button},
    {"option optgroup", Opening::Option},
};

QHash<QString, int> BuildTraits() {
  QHash<QString, int> traits;
  for (const TraitRow& row : traitRows)
    for (const QString& name : QString::fromLatin1(row.names).split(u' ')) traits[name] |= row.traits;
  return traits;
}

QHash<QString, Opening> BuildOpenings() {
  QHash<QString, Opening> openings;
  for (const OpeningRow& row : openingRows)
    for (const QString& name : QString::fromLatin1(row.names).split(u' ')) openings[name] = row.opening;
  return openings;
}

}  // namespace

const Tag* Tag::Of(const QString& localName, Namespace space) {
  static QHash<std::pair<QString, int>, std::shared_ptr<const Tag>> tags;
  auto& slot = tags[{localName, int(space)}];
  if (!slot) {
    static const QHash<QString, int> traitsByName = BuildTraits();
    static const QHash<QString, Opening> openings = BuildOpenings();
    auto tag = std::make_shared<Tag>();
    tag->localName = localName;
    tag->space = space;
    const int traits = space == Namespace::Html ? traitsByName.value(localName) : 0;
    tag->tagName = space == Namespace::Html ? UpperAscii(localName) : localName;
    tag->isVoid = traits & Void;
    tag->isRawText = traits & RawText;
    tag->isHidden = traits & Hidden;
    tag->isAtomic = traits & Atomic || (space != Namespace::Html && (localName == u"svg" || localName == u"math"));
    tag->isBlock = traits & Block;
    tag->isTablePart = traits & TablePart;
    tag->dropsLineEnd = traits & DropsLineEnd;
    tag->holdsText = traits & HoldsText;
    tag->isScope = traits & Scope || space != Namespace::Html;
    tag->endsByItself = traits & EndsByItself;
    tag->isOfTable = traits & OfTable;
    if (space == Namespace::Html) tag->opening = openings.value(localName, Opening::Plain);
    slot = std::move(tag);
  }
  return slot.get();
}

const KnownTags& Known() {
  static const auto html = [](const char* name) { return Tag::Of(QString::fromLatin1(name)); };
  static const KnownTags known = {
      html("a"),     html("b"),        html("body"),      html("br"),       html("font"),     html("head"),
      html("html"),  html("img"),      html("plaintext"), html("pre"),      html("script"),   html("strong"),
      html("table"), html("tbody"),    html("td"),        html("template"), html("textarea"), html("title"),
      html("tr"),    html("noscript"), html("hr"),        html("form"),     html("p"),        html("address"),
      html("div"),   html("option")};
  return known;
}
