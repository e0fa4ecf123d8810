// What a page's text means to its reader: the characters in order, each with the weight, face, size, colour and link
// that it effectively has, whatever markup brings that about.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

#include "EffectiveStyle.h"

class HTMLDocument;

struct ReadCharacter {
  QString text;        // one character; a line break, picture or other object as its tag: "<BR>"
  bool isText = true;  // a character of a text, no object
  bool shows = true;   // false for white space that collapses to nothing
  EffectiveStyle style;
};

// The characters of BODY (of the whole page where there is none). White space that stands alone between two edges of
// blocks, cells or table parts is left out; all other is there as written.
std::vector<ReadCharacter> ReadText(const HTMLDocument& document);

// Where the text of `got` doesn't mean what that of `wanted` means: one line for other characters, or one line for
// each property and stretch of text that has it otherwise. Empty when they mean the same. Objects have no properties,
// and white space has none where it doesn't show in either page.
QStringList MeaningDifferences(const HTMLDocument& got, const HTMLDocument& wanted);
