// All queues on the test's own thread, over a virtual clock.
//
// Which queue runs next is drawn from a seed: the same seed gives the same order, another seed
// another one that the real queues might have taken. A serial queue's own order always holds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "Platform/Dispatch.h"
#include "Tests/Support/SimulatedClock.h"

namespace lanternfold {

/// Time stands still while works run and then jumps to the next delayed work, so a week costs no
/// more than the works in it.
class SimulatedDispatch final : public Dispatch {
 public:
  /// `clock` outlives the dispatch and is moved by it and by works that sleep, which makes what is
  /// due meanwhile late.
  explicit SimulatedDispatch(SimulatedClock& clock, std::uint64_t seed = 1);
  ~SimulatedDispatch() override;

  [[nodiscard]] DispatchQueue& mainQueue() override;
  [[nodiscard]] DispatchQueue& serialQueue(std::string_view label,
                                           QualityOfService quality) override;
  [[nodiscard]] DispatchQueue& globalQueue(QualityOfService quality) override;

  // None of the following may be called by a work.

  /// Runs everything that is due now, and what that appends, without letting time pass, unless a
  /// work sleeps. Here and below, works that keep the moment from ever ending stop the program.
  void runReady();

  /// Lets `duration` pass and runs everything that is due meanwhile, in the order of time. What is
  /// due when a work has slept beyond the end is left to the next call.
  void advance(std::chrono::nanoseconds duration);

  /// Runs works, letting time pass when nothing is due, until `done` returns true: looked at before
  /// every work. Gives up after `limit` of virtual time, or when nothing waits any more. Returns
  /// whether it is done.
  [[nodiscard]] bool runUntil(const std::function<bool()>& done, std::chrono::nanoseconds limit);

  /// Runs one work that is due, without letting time pass; false when there is none.
  bool runOne();

  /// When the next delayed work is due; none when nothing is delayed.
  [[nodiscard]] std::optional<std::chrono::steady_clock::time_point> nextDue() const {
    return delayed_.empty() ? std::nullopt : std::optional(delayed_.front().due);
  }

  /// As the serial queue of this label was made; none when nobody has asked for it yet.
  [[nodiscard]] std::optional<QualityOfService> qualityOf(std::string_view label) const;

  /// Works that wait, delayed ones included.
  [[nodiscard]] std::size_t waitingWorks() const;

 private:
  using TimePoint = std::chrono::steady_clock::time_point;
  class Queue;

  struct Delayed {
    TimePoint due;
    std::uint64_t number;  // of the call, which decides between equal times
    Queue* queue;
    DispatchQueue::Work work;

    friend bool operator>(const Delayed& left, const Delayed& right) {
      return left.due != right.due ? left.due > right.due : left.number > right.number;
    }
  };

  void delay(std::chrono::nanoseconds delay, Queue& queue, DispatchQueue::Work work);
  void refuseNestedRun() const;
  void collectDue();
  /// Runs the works of `queue` that wait before `work`, and then that one, inside whatever runs.
  bool runInTurn(Queue& queue, DispatchQueue::Work work);
  /// Takes a work out of `queue` and runs it.
  void runWorkOf(Queue& queue);
  /// The same, for who runs the queues already.
  bool runOneDue();
  [[nodiscard]] std::size_t draw(std::size_t bound);

  SimulatedClock& clock_;
  std::mt19937_64 random_;
  /// The queues whose works run, each waiting for the next.
  std::vector<const Queue*> running_;
  bool closed_ = false;
  std::uint64_t delayedCalls_ = 0;

  std::unique_ptr<Queue> mainQueue_;
  std::map<QualityOfService, std::unique_ptr<Queue>> globalQueues_;
  std::map<std::string, std::unique_ptr<Queue>, std::less<>> serialQueues_;
  std::map<std::string, QualityOfService, std::less<>> qualities_;  // of the serial queues
  /// The queues that hold works which are due, in the order in which they got their first one.
  std::vector<Queue*> ready_;
  /// A heap, the earliest on top (std::priority_queue cannot give up a work that is moved).
  std::vector<Delayed> delayed_;
};

}  // namespace lanternfold
