#pragma once

#include <QString>

// The answer to a question of the Quick Tips menu, by its place there: paragraphs with two blanks before each and an
// empty line (CR LF twice) between them. "" outside 0 to 11.
QString TipText(int Index);
