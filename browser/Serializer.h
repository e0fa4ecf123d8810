// Writes nodes as HTML by the fragment serialisation rules of the HTML standard, with two rules of our own: `style` is
// always the last attribute, and void elements end in " />". So a blank stands behind every attribute value that names
// a picture, which the scan for pictures relies on.
#pragma once

#include <QByteArray>
#include <QString>

#include "BoundaryPoint.h"

// The node with its tags as the text of a file, in UTF-8 with characters of text above U+007F as decimal references, so
// that it reads right whatever encoding a reader takes it for.
QByteArray FileHtml(const Node* node, bool scripting);

// The node with its tags. `scripting`: NOSCRIPT holds plain text.
QString OuterHtml(const Node* node, bool scripting);

// The content of an element, without its tags.
QString InnerHtml(const Node* node, bool scripting);

// What lies between two points, without the tags of the innermost node that contains both.
QString RangeHtml(const LiveRange& range, bool scripting);
