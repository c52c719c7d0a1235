// Has asio's coroutines run as works of a queue: `asio::co_spawn(QueueExecutor(...), ...)`.
//
// Made by: whoever awaits something and lives on a queue himself.
#pragma once

#include <utility>

#include <asio/execution.hpp>
#include <asio/execution_context.hpp>

#include "Platform/Dispatch.h"

namespace lanternfold {

/// A value. What is handed over runs as a work of its own; on a serial queue nothing else does
/// meanwhile.
class QueueExecutor {
 public:
  /// `queue` outlives whatever is run; `context` is what asio keeps of its own, and does so, too.
  QueueExecutor(DispatchQueue& queue, asio::execution_context& context)
      : queue_(&queue), context_(&context) {}

  // What asio asks of an executor.

  template <typename Work>
  void execute(Work work) const {
    queue_->async([work = std::move(work)]() mutable { std::move(work)(); });
  }
  [[nodiscard]] asio::execution_context& query(asio::execution::context_t) const noexcept {
    return *context_;
  }
  [[nodiscard]] static constexpr asio::execution::blocking_t query(
      asio::execution::blocking_t) noexcept {
    return asio::execution::blocking.never;
  }
  friend bool operator==(const QueueExecutor&, const QueueExecutor&) = default;

 private:
  DispatchQueue* queue_;
  asio::execution_context* context_;
};

}  // namespace lanternfold
