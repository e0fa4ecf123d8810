#pragma once

// Says by what the engine's pages are brought to the screen. To be called before the QApplication is made. Without a
// graphics card they are painted plainly: imitating a card takes half as long again until the first page shows.
void ChooseEngineGraphics();
