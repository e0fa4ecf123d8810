// The style sheet of a page that is to stand beside others in one document: its rules are kept to the page's own part,
// where one element stands for the page's HTML and another one, inside of it, for its BODY.
#pragma once

#include <QString>
#include <functional>

struct StyleScope {
  // How the two elements are chosen: "#p2" and "#p2>.body".
  QString html, body;
  // Stands in front of every id in the page's part: "p2-".
  QString idPrefix;
  // What stands in place of url(...) for an address; "" leaves it as it is.
  std::function<QString(const QString& url)> picture;
};

struct ScopedStyles {
  QString rules;
  // Declarations of the page's background, which covers the whole window and not only the page's part.
  QString background;
};

// Rules that would reach beyond the page's part, such as @import, @font-face and @keyframes, are left out. So is
// whatever can't be read.
ScopedStyles ScopeStyleSheet(const QString& css, const StyleScope& scope);

// The declarations of a style attribute that can stand in a rule: none of them reaches beyond its end.
QString ContainedDeclarations(const QString& style);

// Whether this can stand behind "@media": it doesn't end the rule or begin another one.
bool IsMediaQuery(const QString& media);

// Takes the declarations of the background out of those of a style attribute or rule.
QString TakeBackground(QString& declarations);

// With pictures in place of their addresses.
QString WithPictures(const QString& declarations, const StyleScope& scope);
