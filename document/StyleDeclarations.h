// The declarations of a style attribute. The text stays as somebody wrote it, comments and all; only a declaration that
// is set or removed changes.
#pragma once

#include <QString>
#include <vector>

class StyleDeclarations {
 public:
  // `quirks`: font sizes may be bare numbers, which count as pixels.
  static StyleDeclarations Parse(const QString& text, bool quirks);

  QString Value(const QString& property) const;  // "" when it isn't declared or its value isn't valid

  // In place, or at the end; "" removes. The value that Value() tells changes nothing. Family names that CSS wouldn't
  // take as they are get single quotes.
  void Set(const QString& property, const QString& value);

  QString Text() const { return text_; }

 private:
  struct Declaration {
    QString property;  // lower case
    QString value;     // without comments and "!important"
    bool important = false;
    qsizetype from, to;   // its place in the text, without the ";"
    qsizetype valueFrom;  // where its value begins
  };

  void Read();
  void Remove(const Declaration& declaration);
  void Append(const QString& declaration);

  QString text_;
  bool quirks_ = false;
  std::vector<Declaration> declarations_;  // in order
  bool isEnded_ = true;                    // another declaration may follow the text
  QString closing_;                        // ends what the text leaves open
};
