// How often renderers have died in a row, and when the page is to be brought back: at once, or, where it kills each
// renderer that shows it, at leisure.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <functional>

class RendererWatch {
 public:
  explicit RendererWatch(std::function<void()> recover);

  // One has died. Whether it was one too many in a row.
  bool Died();
  // Somebody works with the page: a row ends.
  void SignOfLife() { deaths_ = 0; }

  // Calls `recover` soon, or later after too many deaths.
  void ScheduleRecovery();

 private:
  QElapsedTimer sinceDeath_;
  int deaths_ = 0;  // in quick succession, without a sign of life in between
  QTimer recovery_;
};
