// What an element of the page is to the editor, told by its tag alone.
// The editor knows text blocks, pictures, tables and the page; every other element is none of them to it, P, DIV, TH
// and their like among them.
#pragma once

#include <QStringView>

#include "HTMLElement.h"

enum class ElementKind { None, TextBlock, TextPart, Link, Picture, Table, Row, Cell, Page };

// Of a tag name in capitals, as HTMLElement::tagName() tells it: FONT is a text block, B and STRONG are parts of one.
ElementKind KindOf(QStringView tag);
inline ElementKind KindOf(const HTMLElement& element) {
  return KindOf(element.tagName());
}

// Where the insertion point goes with a click: a text block, its parts, a link.
inline bool IsText(ElementKind kind) {
  return kind == ElementKind::TextBlock || kind == ElementKind::TextPart || kind == ElementKind::Link;
}

// What can be moved about in the page.
inline bool IsMovable(ElementKind kind) {
  return kind == ElementKind::TextBlock || kind == ElementKind::Picture;
}

// The table that a row or cell stands in, looked for three elements up; none when there is none so near.
HTMLElement TableAround(const HTMLElement& part);
