#pragma once

// The browser engine's first steps. What is told to it has to be told before the QApplication is made.

// Says by what the engine's pages are brought to the screen. Without a graphics card they are painted plainly:
// imitating a card takes half as long again until the first page shows.
void ChooseEngineGraphics();

// Leaves out the engine's process that does nothing but fork processes without a sandbox, of which the program has
// none. Pages come from another one, and their sandbox is whole. What the user has the engine told comes first and
// stays.
void LeaveOutSpareProcess();

class QWebEngineProfile;

// The engine's processes, which begin to load as soon as it is certain that they will be used.
class EngineStart {
 public:
  EngineStart() = default;
  ~EngineStart();
  EngineStart(const EngineStart&) = delete;
  EngineStart& operator=(const EngineStart&) = delete;

  void Begin();

  // What has begun, for the one who takes it; null where nothing has, or it has been taken.
  QWebEngineProfile* Take();

 private:
  QWebEngineProfile* profile_ = nullptr;
};
