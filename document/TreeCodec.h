// Trees as they travel between model and live page: one flat JSON array in document order, so that depth costs nothing.
//   element   1 (SVG: 2, MathML: 4), id, name, number of attributes, name, value, ..., number of children
//             a TEMPLATE's children are followed by a fragment with its content
//   text      3, id, data
//   comment   8, id, data
//   document  9, id, number of children
//   doctype  10, id, name, public identifier, system identifier
//   fragment 11, id, number of children
// Names and values of attributes and data that begin with U+FEFF, which the JSON reader takes for a byte order mark and
// drops, or with U+0001 have a U+0001 put in front.
#pragma once

#include <QJsonArray>
#include <functional>

#include "Node.h"

QString ToWire(const QString& text);
QString FromWire(const QString& text);

void EncodeTree(const Node* tree, QJsonArray& out);

// The element as one without children.
void EncodeAlone(const Node* element, QJsonArray& out);

// Reads one tree from `from` on, which is moved behind it. `known` may hand over a node that already exists under an
// id, detached and without children. Null, with nothing left behind, when the array isn't a tree.
using KnownNode = std::function<Node*(NodeId)>;
Node* DecodeTree(const QJsonArray& in, int& from, const KnownNode& known = {});
