// The key codes that the engine reports, known without asking it.
#pragma once

// DOM keyCode (a Windows virtual key code) of the keys that type, delete or are held to type others, by Qt::Key and
// whether it lies on the keypad; 0 for all others.
int KeyCodeOf(int key, bool isOnKeypad);
