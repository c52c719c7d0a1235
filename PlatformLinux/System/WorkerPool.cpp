#include "PlatformLinux/System/WorkerPool.h"

#include <algorithm>

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>

#include "PlatformLinux/System/ThreadTraits.h"
#include "Support/FatalError.h"

namespace lanternfold {

WorkerPool::WorkerPool(Priority priority)
    : priority_(priority), context_(std::make_unique<asio::io_context>()) {}

WorkerPool::~WorkerPool() { stop(); }

void WorkerPool::schedule(WorkQueue& queue) {
  const std::lock_guard lock(mutex_);
  if (stopped_) return;
  ++turns_;
  addThreadIfNeeded();
  post(queue);
}

void WorkerPool::workBeginsToWait() {
  const std::lock_guard lock(mutex_);
  ++waits_;
  if (!stopped_) addThreadIfNeeded();
}

void WorkerPool::workEndsToWait() {
  const std::lock_guard lock(mutex_);
  --waits_;
}

void WorkerPool::stop() {
  std::vector<std::thread> threads;
  {
    const std::lock_guard lock(mutex_);
    stopped_ = true;
    threads.swap(threads_);
  }
  context_->stop();
  for (std::thread& thread : threads) {
    if (thread.get_id() == std::this_thread::get_id()) {
      fatalError("the dispatch queues were destroyed by one of their own works");
    }
    thread.join();
  }
}

void WorkerPool::addThreadIfNeeded() {
  const std::size_t most = std::min(maximumThreads + waits_, maximumThreadsWithWaits);
  if (turns_ > threads_.size() && threads_.size() < most) {
    threads_.emplace_back([this] { runThread(); });
  }
}

void WorkerPool::post(WorkQueue& queue) {
  asio::post(*context_, [this, &queue] { giveTurn(queue); });
}

void WorkerPool::giveTurn(WorkQueue& queue) {
  if (queue.takeTurn()) {
    post(queue);  // behind the other queues that wait: none starves
    return;
  }
  const std::lock_guard lock(mutex_);
  --turns_;
}

void WorkerPool::runThread() {
  nameCurrentThread(priority_ == Priority::background ? "background-work" : "queue-work");
  if (priority_ == Priority::background) lowerPriorityOfCurrentThread();
  const auto guard = asio::make_work_guard(*context_);
  context_->run();
}

}  // namespace lanternfold
