// The declarations of a style attribute, in order, those that the program doesn't know included.
#pragma once

#include <QString>
#include <vector>

class StyleDeclarations {
 public:
  // `quirks`: font sizes may be bare numbers, which count as pixels.
  static StyleDeclarations Parse(const QString& text, bool quirks);

  QString Value(const QString& property) const;             // "" when it isn't declared or its value isn't valid
  void Set(const QString& property, const QString& value);  // in place, or at the end; "" removes
  QString Text() const;                                     // "a: b; c: d;"

 private:
  struct Declaration {
    QString property;  // lower case
    QString value;     // as written
    bool important = false;
  };
  std::vector<Declaration> declarations_;
  bool quirks_ = false;
};
