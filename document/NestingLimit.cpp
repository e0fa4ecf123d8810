#include "NestingLimit.h"

#include <QHash>
#include <QStringList>
#include <memory>
#include <vector>

#include "Tag.h"

namespace {

bool IsOneOf(const QString& name, const char* names) {
  return QString::fromLatin1(names).split(u' ').contains(name);
}

// What matters of an element's name, worked out once for each name in a text.
struct Kind {
  explicit Kind(const QString& lowerName)
      : name(lowerName),
        endsByItself(Tag::Of(lowerName)->isVoid ||
                     IsOneOf(lowerName,
                             "html head body p li dd dt option optgroup tr td th tbody thead tfoot caption colgroup a "
                             "button nobr rb rt rtc rp")),
        isFormatting(IsOneOf(lowerName, "b big code em font i s small strike strong tt u")),
        isBarrier(IsOneOf(lowerName, "table template applet object marquee svg math select")),
        isCell(IsOneOf(lowerName, "td th caption")),
        endsCell(isCell || IsOneOf(lowerName, "tr tbody thead tfoot col colgroup")),
        isText(Tag::Of(lowerName)->isRawText || IsOneOf(lowerName, "textarea title")) {}

  QString name;
  bool endsByItself;  // ended by the next of its kind or by what is around it
  bool isFormatting;  // its end tag ends it alone and leaves open what was begun inside
  bool isBarrier;     // an end tag inside reaches nothing around it
  bool isCell;        // of a table: what is begun inside ends with it
  bool endsCell;      // neither its start tag nor its end tag leaves a cell open
  bool isText;        // no tags inside
  int open = 0;       // levels of this name
};

bool IsLetter(QChar c) {
  return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}
bool IsSpace(QChar c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\f' || c == u'\r';
}

class Scanner {
 public:
  Scanner(const QString& html, int deepest) : html_(html), deepest_(std::size_t(deepest)) {}

  QString Run() {
    qsizetype at = 0;
    while ((at = html_.indexOf(u'<', at)) >= 0) {
      const qsizetype begin = at++;
      const QChar next = CharAt(at);
      if (next == u'!' && html_.mid(at + 1, 2) == u"--") {
        at = Behind(QStringLiteral("-->"), at + 1);  // "<!-->" is a whole comment, too
      } else if (next == u'!' || next == u'?') {
        at = Behind(QStringLiteral(">"), at);
      } else if (next == u'/' && IsLetter(CharAt(at + 1))) {
        ++at;
        Kind& kind = KindAt(at);
        at = EndOfTag(at);
        const bool wasCellKept = !kind.endsCell || CloseCell();
        if (kind.isCell ? !wasCellKept : !kind.endsCell && !Close(kind)) Drop(begin, at);
      } else if (IsLetter(next)) {
        Kind& kind = KindAt(at);
        at = EndOfTag(at);
        if (kind.endsCell) CloseCell();
        if (kind.endsByItself && !(kind.isCell && IsInTable())) continue;
        const bool isKept = kept_ < deepest_;
        Open(kind, isKept);
        if (!isKept) Drop(begin, at);
        // What is in one that isn't kept is read as tags now, as by the parser.
        if (!kind.isText || !isKept) continue;
        at = html_.indexOf(QStringLiteral("</") + kind.name, at, Qt::CaseInsensitive);
        if (at < 0) break;
      }
    }
    if (done_ == 0) return html_;
    result_ += QStringView(html_).mid(done_);
    return result_;
  }

 private:
  struct Level {
    Kind* kind;
    bool isKept;
  };

  QChar CharAt(qsizetype at) const { return at < html_.size() ? html_[at] : QChar(); }

  qsizetype Behind(const QString& end, qsizetype from) const {
    const qsizetype found = html_.indexOf(end, from);
    return found < 0 ? html_.size() : found + end.size();
  }

  // Of the name that begins at a place, which is moved behind it.
  Kind& KindAt(qsizetype& at) {
    const qsizetype from = at;
    while (at < html_.size() && !IsSpace(html_[at]) && html_[at] != u'/' && html_[at] != u'>') ++at;
    const QStringView name = QStringView(html_).mid(from, at - from);
    auto& kinds = kinds_[std::size_t(name.size()) % std::size(kinds_)];
    for (Kind* const kind : kinds)
      if (name.compare(kind->name, Qt::CaseInsensitive) == 0) return *kind;
    const QString lowerName = name.toString().toLower();
    auto& kind = allKinds_[lowerName];
    if (!kind) {
      kind = std::make_shared<Kind>(lowerName);
      if (kinds.size() < mostLookedThrough) kinds.push_back(kind.get());
    }
    return *kind;
  }

  // Behind the ">" of the tag, which isn't one inside a quoted value.
  qsizetype EndOfTag(qsizetype at) const {
    bool isValue = false;  // a value may begin here
    for (; at < html_.size(); ++at) {
      const QChar c = html_[at];
      if (c == u'>') return at + 1;
      if (isValue && (c == u'"' || c == u'\'')) {
        at = html_.indexOf(c, at + 1);
        if (at < 0) return html_.size();
      }
      isValue = c == u'=' || (isValue && IsSpace(c));
    }
    return at;
  }

  void Open(Kind& kind, bool isKept) {
    levels_.push_back({&kind, isKept});
    ++kind.open;
    kept_ += isKept;
  }

  void Forget(std::size_t index) {
    --levels_[index].kind->open;
    kept_ -= levels_[index].isKept;
    levels_.erase(levels_.begin() + std::ptrdiff_t(index));
  }

  // Where nothing has been kept for long, to look through all that is open would take its time.
  bool IsFarTooDeep() const { return levels_.size() > 4 * deepest_; }

  // Whether the next tag stands in a table and in nothing else that would keep a cell from beginning.
  bool IsInTable() const {
    if (IsFarTooDeep()) return false;
    for (std::size_t index = levels_.size(); index > 0; --index)
      if (levels_[index - 1].kind->isBarrier) return levels_[index - 1].kind->name == u"table";
    return false;
  }

  // Ends the cell that is open, with all that was begun in it; what was begun between table and cell goes on behind
  // the table. False when its start tag was dropped.
  bool CloseCell() {
    if (IsFarTooDeep()) return true;
    for (std::size_t index = levels_.size(); index > 0; --index) {
      if (levels_[index - 1].kind->isCell) {
        const bool isKept = levels_[index - 1].isKept;
        while (levels_.size() >= index) Forget(levels_.size() - 1);
        return isKept;
      }
      if (levels_[index - 1].kind->isBarrier) break;
    }
    return true;
  }

  // False for the end tag of an element whose start tag was dropped.
  bool Close(const Kind& kind) {
    if (kind.open == 0) return true;
    std::size_t index = levels_.size();
    while (levels_[--index].kind != &kind)
      if ((levels_[index].kind->isBarrier || levels_[index].kind->isCell) && !kind.isBarrier) return true;
    const bool isKept = levels_[index].isKept;
    if (kind.isFormatting) {
      Forget(index);
    } else {
      while (levels_.size() > index) Forget(levels_.size() - 1);
    }
    return isKept;
  }

  void Drop(qsizetype from, qsizetype to) {
    result_ += QStringView(html_).mid(done_, from - done_);
    done_ = to;
  }

  const QString& html_;
  const std::size_t deepest_;
  std::vector<Level> levels_;
  // The first names of each length, found without making a text of them; texts have few.
  static constexpr std::size_t mostLookedThrough = 32;
  std::vector<Kind*> kinds_[16];
  QHash<QString, std::shared_ptr<Kind>> allKinds_;
  std::size_t kept_ = 0;
  QString result_;
  qsizetype done_ = 0;  // up to where html_ is in result_
};

}  // namespace

QString LimitNesting(const QString& html, int deepest) {
  if (html.count(u'<') <= deepest) return html;
  return Scanner(html, deepest).Run();
}
