#pragma once

class KindTable;

// A page file through load, save and load on the real engine, which needs a display.
void RegisterRoundtripKinds(KindTable& table);

// What the engine has to find in the environment before the QApplication is made, where nobody has set it.
void PrepareEngineForCases();
