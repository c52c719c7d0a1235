// One caller's wait for a work that it appended with `sync`.
//
// Made by: `WorkQueue::sync`. The caller blocks in `wait`; the work ends the wait by running or by
// being destroyed.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

namespace lanternfold {

/// Shared by the caller and the work; any thread.
class QueueWait {
 public:
  /// Ends the wait exactly once: with `finish`, or as abandoned when it is destroyed before.
  class End {
   public:
    explicit End(std::shared_ptr<QueueWait> wait) : wait_(std::move(wait)) {}
    ~End() { finish(Outcome::abandoned); }
    End(End&&) = default;
    End& operator=(End&&) = delete;

    void finish() { finish(Outcome::finished); }

   private:
    enum class Outcome { waiting, finished, abandoned };
    friend class QueueWait;

    void finish(Outcome outcome) {
      if (const auto wait = std::exchange(wait_, nullptr)) wait->end(outcome);
    }

    std::shared_ptr<QueueWait> wait_;
  };

  /// Blocks until the end; returns whether the work finished.
  [[nodiscard]] bool wait() {
    std::unique_lock lock(mutex_);
    ended_.wait(lock, [this] { return outcome_ != End::Outcome::waiting; });
    return outcome_ == End::Outcome::finished;
  }

 private:
  void end(End::Outcome outcome) {
    const std::lock_guard lock(mutex_);
    outcome_ = outcome;
    ended_.notify_one();
  }

  std::mutex mutex_;
  std::condition_variable ended_;
  End::Outcome outcome_ = End::Outcome::waiting;  // guarded by mutex_
};

}  // namespace lanternfold
