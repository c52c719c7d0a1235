#include "PlatformLinux/System/MainThreadRunner.h"

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>

#include "Support/FatalError.h"

namespace lanternfold {

MainThreadRunner::MainThreadRunner() : context_(std::make_unique<asio::io_context>()) {}

MainThreadRunner::~MainThreadRunner() = default;

void MainThreadRunner::schedule(WorkQueue& queue) {
  asio::post(*context_, [this, &queue] {
    if (queue.takeTurn()) schedule(queue);
  });
}

bool MainThreadRunner::run(std::optional<std::chrono::steady_clock::time_point> deadline) {
  if (running_.exchange(true)) fatalError("the main queue was run twice at the same time");
  const auto guard = asio::make_work_guard(*context_);
  if (deadline) {
    context_->run_until(*deadline);
  } else {
    context_->run();
  }
  // Restarted only when a stop was seen: one that arrives later counts for the next run.
  const bool stopped = context_->stopped();
  if (stopped) context_->restart();
  running_ = false;
  return stopped;
}

void MainThreadRunner::stop() { context_->stop(); }

}  // namespace lanternfold
