// Writes nodes as HTML by the fragment serialisation rules of the HTML standard, with two rules of our own: `style` is
// always the last attribute, and void elements end in " />". So a blank stands behind every attribute value that names
// a picture, which the scan for pictures relies on. What is read again is the same tree: a text that begins with a line
// end gets one more where the parser drops the first, and nothing is written behind a PLAINTEXT, which nothing ends.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "BoundaryPoint.h"

class PageTree;
class TreeLease;

// The file of the page, as PageText.h has it; "" for a page without any element.
QByteArray FileHtml(const PageTree& tree);

// The same in two steps, of which the second needs no page and may be done on another thread.
struct PageToWrite {
  QString text;
  QString encoding;
  QByteArray Bytes() const;
};
PageToWrite PageForFile(const PageTree& tree);

// The first step on another thread than the tree's. Nothing where the tree is changed before it is done.
std::optional<PageToWrite> PageForFile(TreeLease& lease);

// The node with its tags. `scripting`: NOSCRIPT holds plain text.
QString OuterHtml(const Node* node, bool scripting);

// The content of an element, without its tags.
QString InnerHtml(const Node* node, bool scripting);

// What lies between two points, without the tags of the innermost node that contains both.
QString RangeHtml(const LiveRange& range, bool scripting);
