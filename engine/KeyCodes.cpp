#include "KeyCodes.h"

#include <QtCore/qnamespace.h>

namespace {

struct Row {
  int key;
  int keyCode;
};

// Letters and digits count up by themselves. A sign stands by the key of a US keyboard that has it.
constexpr Row rows[] = {
    {Qt::Key_Backspace, 8},      {Qt::Key_Return, 13},      {Qt::Key_Enter, 13},       {Qt::Key_Shift, 16},
    {Qt::Key_Control, 17},       {Qt::Key_Alt, 18},         {Qt::Key_Space, 32},       {Qt::Key_Delete, 46},
    {Qt::Key_ParenRight, 48},    {Qt::Key_Exclam, 49},      {Qt::Key_At, 50},          {Qt::Key_NumberSign, 51},
    {Qt::Key_Dollar, 52},        {Qt::Key_Percent, 53},     {Qt::Key_AsciiCircum, 54}, {Qt::Key_Ampersand, 55},
    {Qt::Key_Asterisk, 56},      {Qt::Key_ParenLeft, 57},   {Qt::Key_Semicolon, 186},  {Qt::Key_Colon, 186},
    {Qt::Key_Equal, 187},        {Qt::Key_Plus, 187},       {Qt::Key_Comma, 188},      {Qt::Key_Less, 188},
    {Qt::Key_Minus, 189},        {Qt::Key_Underscore, 189}, {Qt::Key_Period, 190},     {Qt::Key_Greater, 190},
    {Qt::Key_Slash, 191},        {Qt::Key_Question, 191},   {Qt::Key_QuoteLeft, 192},  {Qt::Key_AsciiTilde, 192},
    {Qt::Key_BracketLeft, 219},  {Qt::Key_BraceLeft, 219},  {Qt::Key_Backslash, 220},  {Qt::Key_Bar, 220},
    {Qt::Key_BracketRight, 221}, {Qt::Key_BraceRight, 221}, {Qt::Key_Apostrophe, 222}, {Qt::Key_QuoteDbl, 222},
};

}  // namespace

int KeyCodeOf(int key, bool isOnKeypad) {
  const bool isLetter = key >= Qt::Key_A && key <= Qt::Key_Z;
  const bool isDigit = key >= Qt::Key_0 && key <= Qt::Key_9;
  const bool isSameThere =
      key == Qt::Key_Enter || key == Qt::Key_Return || key == Qt::Key_Delete || key == Qt::Key_Equal;
  if (isOnKeypad && !isSameThere) return 0;  // its digits and signs have codes that type nothing
  if (isLetter || isDigit) return key;
  for (const Row& row : rows)
    if (row.key == key) return row.keyCode;
  return 0;
}
