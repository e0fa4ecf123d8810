#pragma once

// Sets a window's `Busy` for the length of a command and clears it on each way out. The guard of a command that came in
// while `Busy` was set is false, and leaves it set. The window has to outlive the command, which it does: windows go
// when no loop runs any more.
class BusyGuard {
 public:
  explicit BusyGuard(bool& busy) : busy_(busy), mine_(!busy) { busy_ = true; }
  ~BusyGuard() {
    if (mine_) busy_ = false;
  }
  BusyGuard(const BusyGuard&) = delete;
  BusyGuard& operator=(const BusyGuard&) = delete;

  explicit operator bool() const { return mine_; }

 private:
  bool& busy_;
  bool mine_;
};
