// What a released key puts into the page: HTML text by virtual key code, for the layout of a US keyboard.
#pragma once

#include <QString>

enum class KeyAction { Nothing, Insert, Backspace, Delete };

struct KeyMeaning {
  KeyAction action = KeyAction::Nothing;
  QString html;  // for Insert
};

// `brClear` is the line break that clears floats. Shift is the state at the release; nothing else counts.
KeyMeaning KeyToText(int keyCode, bool shift, const QString& brClear);
