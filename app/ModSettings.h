// What is remembered between two runs, carried between the settings store and the program's values and controls.
#pragma once

class FWeb;
struct Program;

void LoadWinSettings(Program& program, FWeb& web);
void SaveWinSettings(Program& program, const FWeb& web);

// The colour dialog's own colours; what isn't numeric is passed over.
void LoadCustomColors(Program& program);
void SaveCustomColors(Program& program);

// Folder, link text and icon of web-packs. A folder or custom icon that is gone is replaced by the default.
void LoadPackSettings(Program& program);
