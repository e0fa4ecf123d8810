#include "KeyTable.h"

namespace {

struct Row {
  int keyCode;
  const char* plain;
  const char* shifted;
};

// Only the characters with a meaning in HTML have entities.
constexpr Row rows[] = {
    {48, "0", ")"},  {49, "1", "!"},     {50, "2", "@"},  {51, "3", "#"},     {52, "4", "$"},      {53, "5", "%"},
    {54, "6", "^"},  {55, "7", "&amp;"}, {56, "8", "*"},  {57, "9", "("},     {32, " ", "&nbsp;"}, {186, ";", ":"},
    {187, "=", "+"}, {188, ",", "&lt;"}, {189, "-", "_"}, {190, ".", "&gt;"}, {191, "/", "?"},     {192, "`", "~"},
    {219, "[", "{"}, {220, "\\", "|"},   {221, "]", "}"}, {222, "'", "\""},
};

constexpr int backspaceKey = 8;
constexpr int returnKey = 13;
constexpr int deleteKey = 46;  // not the period, which is 190

}  // namespace

KeyMeaning KeyToText(int keyCode, bool shift, const QString& brClear) {
  if (keyCode >= 'A' && keyCode <= 'Z')
    return {KeyAction::Insert, QString(QChar(shift ? keyCode : keyCode + ('a' - 'A')))};
  if (keyCode == deleteKey) return {KeyAction::Delete, {}};
  if (keyCode == backspaceKey) return {KeyAction::Backspace, {}};
  if (keyCode == returnKey) return {KeyAction::Insert, shift ? brClear : QStringLiteral("<BR>")};
  for (const Row& row : rows)
    if (row.keyCode == keyCode) return {KeyAction::Insert, QString::fromLatin1(shift ? row.shifted : row.plain)};
  return {};
}
