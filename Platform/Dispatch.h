// The seam to queues of work: the main queue, labelled serial queues, global queues.
//
// Production side: `AsioDispatch`. Fake: `SimulatedDispatch`, all queues on one thread over a
// virtual clock. Both pass the same contract tests.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

#include "Support/FatalError.h"

namespace lanternfold {

enum class QualityOfService { userInteractive, userInitiated, utility, background };

/// A queue of work. Everything may be called from any thread; `async` and `after` never block. Work
/// that is still waiting when the owning `Dispatch` is destroyed is destroyed without being run.
class DispatchQueue {
 public:
  using Work = std::move_only_function<void()>;

  virtual ~DispatchQueue() = default;

  /// Appends `work`; a serial queue runs works one at a time in the order of the calls.
  virtual void async(Work work) = 0;

  /// Appends `work` when `delay` has passed (at once for a delay of zero or less). Works of one
  /// serial queue that are due at the same moment run in the order of the calls.
  virtual void after(std::chrono::nanoseconds delay, Work work) = 0;

  /// Appends `work` and blocks the caller until the queue has run it. What the work holds is
  /// released on the queue before the return. Returns whether it was run: false only when the
  /// owning `Dispatch` is being destroyed, which destroys the work and lets the caller go.
  ///
  /// Waiting for a serial queue that waits for the caller (the caller runs as its work, or the
  /// queue's work waits, through others, for the caller's) would never end, and stops the program.
  /// A thread that is no work of a queue may call it too; it must not be the main thread when the
  /// work, through others, needs the main queue.
  virtual bool sync(Work work) = 0;

  /// Whether the calling code runs as work of this queue. Inside a `sync` that is the queue waited
  /// for, not the one that waits.
  [[nodiscard]] virtual bool isCurrent() const = 0;

  [[nodiscard]] virtual std::string_view label() const = 0;
};

/// Owns every queue; outlives all that hold a reference to one.
class Dispatch {
 public:
  virtual ~Dispatch() = default;

  /// The serial queue of the program's main thread.
  [[nodiscard]] virtual DispatchQueue& mainQueue() = 0;

  /// The one serial queue of this label, created lazily by the first call and kept; a later call
  /// with another quality of service gets the queue as it was created.
  [[nodiscard]] virtual DispatchQueue& serialQueue(std::string_view label,
                                                   QualityOfService quality) = 0;

  /// The concurrent queue of a quality of service.
  [[nodiscard]] virtual DispatchQueue& globalQueue(QualityOfService quality) = 0;
};

/// For the sides of this seam: stops the program over a `sync` that would never end.
[[noreturn]] inline void stopForCircularWait(const DispatchQueue& queue) {
  fatalError("a work waited for the queue \"" + std::string(queue.label()) +
             "\", which waits for that work");
}

/// Stops the program when the caller does not run on `queue`.
inline void assertOnQueue(const DispatchQueue& queue) {
  if (!queue.isCurrent()) {
    fatalError("code that belongs on the queue \"" + std::string(queue.label()) +
               "\" ran elsewhere");
  }
}

}  // namespace lanternfold
