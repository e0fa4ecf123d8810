#include "NestingLimit.h"

#include <QHash>
#include <QSet>
#include <vector>

#include "Tag.h"

namespace {

QSet<QString> Names(const char* names) {
  const QStringList list = QString::fromLatin1(names).split(u' ');
  return QSet<QString>(list.begin(), list.end());
}

// Ended by the next of their kind or by what is around them.
bool EndsByItself(const QString& name) {
  static const QSet<QString> names = Names(
      "html head body p li dd dt option optgroup tr td th tbody thead tfoot caption colgroup a button nobr rb rt rtc "
      "rp");
  return names.contains(name) || Tag::Of(name)->isVoid;
}

// Their end tags end them alone and leave open what was begun inside.
bool IsFormatting(const QString& name) {
  static const QSet<QString> names = Names("b big code em font i s small strike strong tt u");
  return names.contains(name);
}

// An end tag inside reaches nothing around them.
bool IsBarrier(const QString& name) {
  static const QSet<QString> names = Names("table template applet object marquee svg math select");
  return names.contains(name);
}

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
        const QString name = Name(at);
        at = EndOfTag(at);
        if (!Close(name)) Drop(begin, at);
      } else if (IsLetter(next)) {
        const QString name = Name(at);
        at = EndOfTag(at);
        if (EndsByItself(name)) continue;
        const bool isKept = kept_ < deepest_;
        Open(name, isKept);
        if (!isKept) Drop(begin, at);
        if (!Tag::Of(name)->isRawText && name != u"textarea" && name != u"title") continue;
        if (!isKept) continue;  // what is in it is read as tags now, as by the parser
        at = html_.indexOf(QStringLiteral("</") + name, at, Qt::CaseInsensitive);
        if (at < 0) break;
      }
    }
    if (done_ == 0) return html_;
    result_ += QStringView(html_).mid(done_);
    return result_;
  }

 private:
  struct Level {
    QString name;
    bool isKept;
  };

  QChar CharAt(qsizetype at) const { return at < html_.size() ? html_[at] : QChar(); }

  qsizetype Behind(const QString& end, qsizetype from) const {
    const qsizetype found = html_.indexOf(end, from);
    return found < 0 ? html_.size() : found + end.size();
  }

  QString Name(qsizetype& at) const {
    const qsizetype from = at;
    while (at < html_.size() && !IsSpace(html_[at]) && html_[at] != u'/' && html_[at] != u'>') ++at;
    return html_.mid(from, at - from).toLower();
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

  void Open(const QString& name, bool isKept) {
    levels_.push_back({name, isKept});
    ++open_[name];
    kept_ += isKept;
  }

  void Forget(std::size_t index) {
    --open_[levels_[index].name];
    kept_ -= levels_[index].isKept;
    levels_.erase(levels_.begin() + std::ptrdiff_t(index));
  }

  // False for the end tag of an element whose start tag was dropped.
  bool Close(const QString& name) {
    if (open_.value(name) == 0) return true;
    std::size_t index = levels_.size();
    while (levels_[--index].name != name)
      if (IsBarrier(levels_[index].name) && !IsBarrier(name)) return true;
    const bool isKept = levels_[index].isKept;
    if (IsFormatting(name)) {
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
  QHash<QString, int> open_;  // number of levels by name
  std::size_t kept_ = 0;
  QString result_;
  qsizetype done_ = 0;  // up to where html_ is in result_
};

}  // namespace

QString LimitNesting(const QString& html, int deepest) {
  if (html.count(u'<') <= deepest) return html;
  return Scanner(html, deepest).Run();
}
