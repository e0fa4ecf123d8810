#pragma once

// Sets a window's `Busy` for the length of a command and clears it on each way out. The guard of a command that came in
// while `Busy` was set is false, and leaves it set.
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
