// Steps through the text of a page as its reader sees it.
// One step is a character (never half of a surrogate pair), a line break, a picture or another atomic element, or the
// edge of a block or cell. Several edges one after the other are one step, but an empty block that can hold text is a
// place of its own. Source formatting (runs of white space with a line end or tab in them) counts one character where
// it shows as a blank and none where it shows as nothing.
#pragma once

#include <QString>
#include <optional>

#include "BoundaryPoint.h"

// The place one step on; nothing at the end (or start) of `body`. `from` lies in `body`.
std::optional<BoundaryPoint> StepForward(const BoundaryPoint& from, const Node* body);
std::optional<BoundaryPoint> StepBackward(const BoundaryPoint& from, const Node* body);

// The deepest place behind the last character of `body`; behind a closing table, at the level of the table.
BoundaryPoint EndOfText(const Node* body);

// The text between two points: a BR and the edges of blocks and cells as CR LF, atomic elements as nothing. An HR ends
// lines as a block does.
QString TextBetween(const LiveRange& range);

// False for a text that takes no room of its own: empty, or white space at an edge of a block or in the structure of a
// table.
bool ShowsOnPage(const Node* text);

// False when nothing lies between the points but edges of blocks and cells and white space that doesn't show.
bool SpansContent(const LiveRange& range);
