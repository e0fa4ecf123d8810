// The name of an element, kept once for the whole program, with what the document model has to know about it.
// Tags are compared by address.
#pragma once

#include <QString>
#include <cstdint>

enum class Namespace : std::uint8_t { Html, Svg, MathMl };

// What the parser ends before it opens an element: nothing, another of its kind, or a paragraph as well. The insertion
// mode "in body" of the HTML standard.
enum class Opening : std::uint8_t { Plain, Link, Nobr, Block, Heading, Item, Term, Button, Option };

struct Tag {
  QString localName;  // as the parser gives it: "font", "foreignObject"
  QString tagName;    // as the DOM's tagName gives it: upper case for HTML, unchanged for others
  Namespace space = Namespace::Html;
  bool isVoid = false;        // HTML "void elements": no content, no end tag
  bool isRawText = false;     // text content is serialised without escapes
  bool isHidden = false;      // its content is no part of the page's text: HEAD, SCRIPT, STYLE and the like
  bool isAtomic = false;      // one character of text for itself: IMG, HR, INPUT, OBJECT, IFRAME and the like
  bool isBlock = false;       // its edges end a line of text: blocks, tables and their parts, cells
  bool isTablePart = false;   // TABLE, TBODY, THEAD, TFOOT, TR: white space directly inside is no text
  bool dropsLineEnd = false;  // a line end right behind its start tag is none of its text
  bool holdsText = false;     // a block in which a caret may stand even while it is empty
  bool isScope = false;       // where the parser stops looking for what is open
  bool endsByItself = false;  // the parser ends it at an end tag further outside: "generate implied end tags"
  bool isOfTable = false;     // no stranger inside a TABLE, and so not put in front of it
  Opening opening = Opening::Plain;

  // The one Tag for a name. `localName` of HTML elements is lower case.
  static const Tag* Of(const QString& localName, Namespace space = Namespace::Html);
};

// The tags that the program asks for by name.
struct KnownTags {
  const Tag *a, *b, *body, *br, *font, *head, *html, *img, *plaintext, *pre, *script, *strong, *table, *tbody, *td,
      *templateTag, *textarea, *title, *tr, *noscript, *hr, *form, *p, *address, *div, *option;
};
const KnownTags& Known();
