// Keeps HTML text from nesting deeper than a tree is kept: the parser's time grows with the depth at every tag, and a
// hundred thousand levels would take it minutes.
#pragma once

#include <QString>

// The text without the tags that would open more than `deepest` levels, and without the end tags that belong to them;
// what is in them stays. Where elements end by themselves, as paragraphs and list items do, nothing is counted, so that
// the text of an ordinary page comes back as it is.
QString LimitNesting(const QString& html, int deepest);
