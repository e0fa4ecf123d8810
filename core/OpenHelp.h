#pragma once

class QWidget;
struct Program;

// Hands the help file to the desktop's viewer and tells the user where that doesn't work.
void OpenHelp(Program& program, QWidget* Owner);
