// The main window as data: its menus, its tool buttons and where its controls stand.
#pragma once

#include <span>

class FWeb;

// An entry of the menu bar. Depth 0 is a menu, 1 an entry; a caption "-" is a separator.
struct MenuRow {
  int depth;
  const char* name;
  const char* caption;
  void (FWeb::*command)();
};
std::span<const MenuRow> MenuRows();

// A picture of the tool strip; its place in the array is its index, its position is in twips.
struct ToolRow {
  int index;
  int left, top;
  const char* icon;
  const char* toolTip;
  void (FWeb::*command)();
};
std::span<const ToolRow> ToolRows();
inline constexpr int kToolSize = 240;  // twips, each way
inline constexpr int kToolCount = 9;

// A control of the strip FrFont, in twips.
struct FontRow {
  enum class Kind { Label, List, Swatch, Button } kind;
  const char* name;
  int left, top, width, height;
  const char* text;     // caption, or the list's entries with "|" between them
  const char* toolTip;  // null for none
};
std::span<const FontRow> FontRows();
