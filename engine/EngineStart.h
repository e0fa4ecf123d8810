// What is told to the browser engine before it starts: by what its pages come to the screen, and what it needn't load.
#pragma once

#include <QByteArray>
#include <optional>
#include <utility>
#include <vector>

// Without a graphics card pages are painted plainly: imitating a card takes half as long again until the first page
// shows. To be called before the QApplication is made.
void ChooseEngineGraphics();

// Leaves out, while it lives, what the program has no use for: without a graphics card the libraries that imitate one,
// and the engine's process that does nothing but fork processes without a sandbox. Pages come from another one, and
// their sandbox is whole. What the user has told is kept. It says so in the environment, so it has to be made before
// the QApplication and to go when the engine has been started: the programs that are started later are none of it.
class LeanEngine {
 public:
  LeanEngine();
  ~LeanEngine();
  LeanEngine(const LeanEngine&) = delete;
  LeanEngine& operator=(const LeanEngine&) = delete;

 private:
  void Set(const char* name, const QByteArray& value);

  std::vector<std::pair<const char*, std::optional<QByteArray>>> before_;
};
