#pragma once

#include <QObject>
#include <QPointer>

// Sets a window's `Busy` for the length of a command and clears it on each way out. The guard of a command that came in
// while `Busy` was set is false, and leaves it set.
class BusyGuard {
 public:
  explicit BusyGuard(bool& busy) : busy_(busy), mine_(!busy) { busy_ = true; }
  // For a command during which the window with the flag may go.
  BusyGuard(bool& busy, QObject* window) : BusyGuard(busy) {
    window_ = window;
    mayGo_ = true;
  }
  ~BusyGuard() {
    if (mine_ && (window_ || !mayGo_)) busy_ = false;
  }
  BusyGuard(const BusyGuard&) = delete;
  BusyGuard& operator=(const BusyGuard&) = delete;

  explicit operator bool() const { return mine_; }

 private:
  bool& busy_;
  bool mine_;
  bool mayGo_ = false;
  QPointer<QObject> window_;
};
