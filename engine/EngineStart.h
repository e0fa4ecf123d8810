#pragma once

// What the browser engine has to be told before the QApplication is made.

// Says by what the engine's pages are brought to the screen. Without a graphics card they are painted plainly:
// imitating a card takes half as long again until the first page shows.
void ChooseEngineGraphics();

// Leaves out the engine's process that does nothing but fork processes without a sandbox, of which the program has
// none. Pages come from another one, and their sandbox is whole. What the user has the engine told comes first and
// stays.
void LeaveOutSpareProcess();
