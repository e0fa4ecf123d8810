// Takes the text of a page apart as a browser's tokenizer does: tags with their attributes, text, and what is neither.
// Where only the tree could tell whether a text is raw, it counts as raw. Nothing is skipped: the pieces, one behind
// the other, are the text.
#pragma once

#include <QString>
#include <QStringView>
#include <vector>

struct HtmlPiece {
  enum class Kind {
    Text,      // character references stand for characters here
    Raw,       // they don't: SCRIPT, STYLE and the like
    Markup,    // nor here: a comment, a document type, whatever else begins with "<!" or "<?"
    StartTag,  //
    EndTag,
  };
  struct Attribute {
    QStringView name;
    qsizetype from, to;  // the value, quotes left out; equal where there is none
    bool isQuoted;
  };

  Kind kind = Kind::Text;
  qsizetype from = 0, to = 0;  // the whole piece
  QString name;                // of a tag, in lower case
  std::vector<Attribute> attributes;

  // The first of that name, as only it counts; null when there is none.
  const Attribute* Find(QLatin1String name) const;
};

class HtmlLexer {
 public:
  // Whether NOSCRIPT holds plain text, as it does for a reader that runs scripts.
  enum class Noscript { Raw, Tags };

  // The text has to stay where it is.
  explicit HtmlLexer(QStringView html, Noscript noscript = Noscript::Raw) : html_(html), noscript_(noscript) {}

  // Goes on to the next piece; false behind the last.
  bool Next(HtmlPiece& piece);

 private:
  QChar At(qsizetype at) const { return at < html_.size() ? html_[at] : QChar(); }
  qsizetype Behind(QLatin1String end, qsizetype from) const;
  qsizetype EndOfMarkup(qsizetype from) const;
  qsizetype EndTagOf(QStringView name, qsizetype from) const;
  qsizetype EndOfScript(qsizetype from) const;
  qsizetype ReadAttributes(qsizetype from, HtmlPiece& piece) const;
  void FindRawText(const QString& name);

  QStringView html_;
  Noscript noscript_;
  qsizetype at_ = 0;
  qsizetype rawEnd_ = -1;  // of the content that begins at at_, where it is no ordinary one
  bool isRaw_ = false;     // whether that is raw or only without tags
};
