// The right to read a page's tree on another thread, while its own thread goes on with its work. It ends with the first
// change of the tree, which waits until the reader has let go; so the reader asks between any two nodes whether it has
// ended, and throws away then what it has read.
#pragma once

#include <atomic>
#include <mutex>

class PageTree;

class TreeLease {
 public:
  explicit TreeLease(const PageTree& tree) : tree_(tree) {}
  TreeLease(const TreeLease&) = delete;
  TreeLease& operator=(const TreeLease&) = delete;

  // Held by the reader, on its thread, from before the first question of whether the lease has ended.
  class Reading {
   public:
    explicit Reading(TreeLease& lease) : hold_(lease.reading_) {}

   private:
    std::lock_guard<std::mutex> hold_;
  };

  bool HasEnded() const { return hasEnded_.load(std::memory_order_relaxed); }
  // May be gone once the lease has ended.
  const PageTree& tree() const { return tree_; }

  // On the tree's thread: nobody reads any more when it returns.
  void End() {
    hasEnded_.store(true, std::memory_order_relaxed);
    const std::lock_guard wait(reading_);
  }

 private:
  const PageTree& tree_;
  std::atomic<bool> hasEnded_ = false;
  std::mutex reading_;
};
