#include "PlatformLinux/System/MainThreadRunner.h"

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/post.hpp>

#include "Support/FatalError.h"

namespace lanternfold {

/// The guard is there between runs too: where nothing waits, its end would stop the next run.
struct MainThreadRunner::Loop {
  asio::io_context context;
  asio::executor_work_guard<asio::io_context::executor_type> guard{context.get_executor()};
};

MainThreadRunner::MainThreadRunner() : loop_(std::make_unique<Loop>()) {}

MainThreadRunner::~MainThreadRunner() = default;

void MainThreadRunner::schedule(WorkQueue& queue) {
  asio::post(loop_->context, [this, &queue] {
    if (queue.takeTurn()) schedule(queue);
  });
}

bool MainThreadRunner::run(std::optional<std::chrono::steady_clock::time_point> deadline) {
  if (running_.exchange(true)) fatalError("the main queue was run twice at the same time");
  asio::io_context& context = loop_->context;
  if (deadline) {
    context.run_until(*deadline);
  } else {
    context.run();
  }
  // Restarted only when a stop was seen: one that arrives later counts for the next run.
  const bool stopped = context.stopped();
  if (stopped) context.restart();
  running_ = false;
  return stopped;
}

void MainThreadRunner::stop() { loop_->context.stop(); }

}  // namespace lanternfold
