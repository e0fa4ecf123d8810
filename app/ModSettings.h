// What is remembered between two runs, carried between the settings store and the program's values and controls.
#pragma once

#include <array>

class FWeb;
class QAbstractButton;
class QComboBox;
class QLabel;
class QLineEdit;
struct Program;

// The controls of other windows than FWeb that the settings fill and come from. One that isn't there is null; its
// setting is then left alone.
struct WindowControls {
  // Of FTools.
  QComboBox* BoxFace = nullptr;
  // Of FSets.
  QLineEdit* tPath = nullptr;
  QLineEdit* tLink = nullptr;
  QLabel* ImCustom = nullptr;
  std::array<QAbstractButton*, 11> OpIco{};
};

void LoadWinSettings(Program& program, FWeb& web, const WindowControls& controls);
void SaveWinSettings(Program& program, const FWeb& web, const WindowControls& controls);

// The colour dialog's own colours; what isn't numeric is passed over.
void LoadCustomColors(Program& program);
void SaveCustomColors(Program& program);

// Folder, link text and icon of web-packs. A folder or custom icon that is gone is replaced by the default, for this
// run: the store keeps it.
void LoadPackSettings(Program& program, const WindowControls& controls);
