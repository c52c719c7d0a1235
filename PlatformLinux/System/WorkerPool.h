// Threads that give turns to queues.
//
// Made by: `AsioDispatch`, one for ordinary work and one for background work. Works may block
// (a file lock, a wait for another queue), so the pool begins a further thread whenever all are
// taken, up to a bound: a queue is not held up by another one's wait.
#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "PlatformLinux/System/WorkQueue.h"

namespace asio {
class io_context;
}

namespace lanternfold {

class WorkerPool final : public QueueRunner {
 public:
  enum class Priority { ordinary, background };

  explicit WorkerPool(Priority priority);
  ~WorkerPool() override;

  void schedule(WorkQueue& queue) override;
  void workBeginsToWait() override;
  void workEndsToWait() override;

  /// Ends every thread after the work that it is running. Not to be called on one of them.
  void stop();

  /// Threads at work at the same time.
  static constexpr std::size_t maximumThreads = 32;
  /// Those included whose works wait for another queue, which may need a thread of this pool.
  static constexpr std::size_t maximumThreadsWithWaits = 256;

 private:
  void addThreadIfNeeded();  // with mutex_ held
  void post(WorkQueue& queue);
  void giveTurn(WorkQueue& queue);
  void runThread();

  const Priority priority_;
  std::unique_ptr<asio::io_context> context_;
  std::mutex mutex_;
  std::size_t turns_ = 0;             // guarded by mutex_: given or waiting to be given
  std::size_t waits_ = 0;             // guarded by mutex_: of works that have a turn
  std::vector<std::thread> threads_;  // guarded by mutex_
  bool stopped_ = false;              // guarded by mutex_
};

}  // namespace lanternfold
