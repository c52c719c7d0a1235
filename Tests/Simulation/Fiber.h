// A simulated program's own stack: it runs when it is resumed, until it suspends itself.
//
// Made by: the scheduler. All fibers of a world share one thread of the system, so that a run is
// the same every time and a change of program costs no more than a call.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>

namespace lanternfold::simulation {

/// Used by one thread only. The body catches its own exceptions, and does not suspend inside of a
/// catch clause: the list of caught exceptions belongs to the thread.
class Fiber {
 public:
  explicit Fiber(std::function<void()> body);
  Fiber(const Fiber&) = delete;
  Fiber& operator=(const Fiber&) = delete;
  /// Stops the program when the body has begun and not ended: what stands on its stack would leak.
  ~Fiber();

  /// Runs the body until it suspends or ends. Not called by a fiber.
  void resume();
  /// Goes back to who resumed; called by the body.
  void suspend();
  [[nodiscard]] bool isFinished() const { return isFinished_; }

 private:
  struct Stacks;
  static void enter(unsigned high, unsigned low);

  std::function<void()> body_;
  std::unique_ptr<Stacks> stacks_;
  bool hasBegun_ = false;
  bool isFinished_ = false;
};

}  // namespace lanternfold::simulation
