// Pages with a selection marked in their HTML: "[" and "]" in text, "{" and "}" at places between nodes.
#pragma once

#include <QString>

#include "BoundaryPoint.h"

class HTMLDocument;

// Fills an empty document with a page whose BODY has this content, and takes the marks out again; texts that only a
// mark had cut are whole. True, with the marked range in `range`, when there were exactly two marks. A mark in a tag
// is none, and a "{" or "}" may stand where the parser lets no text stay.
bool MakeMarkedPage(const QString& html, HTMLDocument& document, LiveRange& range);
