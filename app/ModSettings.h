// What is remembered between two runs, carried between the settings store and the program's values and controls.
#pragma once

class FSets;
class FTools;
class FWeb;
struct Program;

void LoadWinSettings(Program& program, FWeb& web, FTools& tools);
void SaveWinSettings(Program& program, const FWeb& web, const FTools& tools);

// The colour dialog's own colours; what isn't numeric is passed over.
void LoadCustomColors(Program& program);
void SaveCustomColors(Program& program);

// Folder, link text and icon of web-packs. A folder or custom icon that is gone is replaced by the default, for this
// run: the store keeps it.
void LoadPackSettings(Program& program, FSets& sets);
