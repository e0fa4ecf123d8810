// The main window as data: its menus, its tool buttons and where its controls stand.
#pragma once

#include <span>

class FWeb;

// An entry of the menus. Depth 0 is a menu of the bar, 1 an entry or a sub-menu, 2 an entry of that; a caption "-" is a
// separator, and a row whose next is deeper is a menu. Of the two kinds of command one is null: that of entries that
// stand for themselves, and that of entries of an array, which gets the place in it.
struct MenuRow {
  int depth;
  const char* name;
  const char* caption;
  void (FWeb::*command)() = nullptr;
  void (FWeb::*indexed)(int) = nullptr;
  int index = 0;
  int key = 0;  // that runs it in the whole window, 0 for none; letters are no choice, as they type with Ctrl too
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

// A button of the Work Window, by its index; the place is in pixels in its frame. `label` is the small text under it.
// Of the two kinds of command one is null: that of buttons that stand for themselves, and that of buttons for one
// command in several directions, which gets the direction. Both run while Busy is set.
struct WorkRow {
  bool moves;  // of the frame for moving, else of that for editing
  int left;
  const char* icon;
  const char* label;
  const char* toolTip;
  void (FWeb::*command)() = nullptr;
  void (FWeb::*directed)(int) = nullptr;
  int direction = 0;
  bool needsElement = false;  // without a current element it only says that nothing is selected
};
std::span<const WorkRow> WorkRows();

// A control of the strip FrFont, in twips.
struct FontRow {
  enum class Kind { Label, List, Swatch, Button } kind;
  const char* name;
  int left, top, width, height;
  const char* text;     // caption, or the list's entries with "|" between them
  const char* toolTip;  // null for none
};
std::span<const FontRow> FontRows();
