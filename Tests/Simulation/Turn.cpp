#include "Tests/Simulation/Turn.h"

#include <utility>

namespace lanternfold::simulation {

void Turn::begin(std::function<void()> body) {
  run_.log.add(Happening::programStarted, number_);
  task_ = run_.scheduler.start([this, body = std::move(body)] {
    run_.running = this;
    try {
      body();
      run_.log.add(Happening::programEnded, number_);
    } catch (const Killed&) {
      isKilled_ = true;
    }
  });
}

void Turn::waitUntil(TimePoint moment) { wait(moment); }

void Turn::holdUp(std::chrono::nanoseconds duration) {
  if (isKilled_) return;
  const TimePoint from = run_.clock.steadyNow();
  wait(from + duration);
  heldUp_ += run_.clock.steadyNow() - from;
}

void Turn::kill() {
  if (hasEnded() || isKilled_) return;
  isKilled_ = true;
  run_.log.add(Happening::programKilled, number_);
  run_.scheduler.wake(task_);
}

void Turn::step() {
  if (!isKilled_ && stepsToLive_ && (*stepsToLive_)-- == 0) {
    isKilled_ = true;
    run_.log.add(Happening::programKilled, number_);
    die();
  }
}

void Turn::wait(TimePoint moment) {
  if (isKilled_) return;  // its objects are being destroyed
  run_.scheduler.waitUntil(moment);
  run_.running = this;
  if (isKilled_) die();
}

void Turn::die() { throw Killed(); }

}  // namespace lanternfold::simulation
