// The commands that format a stretch of text, and what they would tell of a place.
// They write FONT, B and A: these elements are the text blocks of a page. FONT is never taken away or merged with
// another one. Names are those of the document editing commands, in any case.
#pragma once

#include <QString>

#include "BoundaryPoint.h"

class Gateway;
class PageTree;

// ForeColor and BackColor take a colour of CSS without transparency, FontName a face, FontSize a number from 1 to 7 or
// a difference to 3 with its sign, CreateLink an address; Bold takes no value and toggles. False, with nothing changed,
// for another command, a value that isn't one, and a range without anything to format. `range` is one of the document's
// live ranges and keeps its text.
bool ExecCommand(Gateway& gateway, LiveRange& range, const QString& name, const QString& value);

// ForeColor and BackColor as "#RRGGBB", FontName without quotes, FontSize as a digit; "" for another command.
QString QueryCommandValue(const PageTree& tree, const BoundaryPoint& at, const QString& name);
