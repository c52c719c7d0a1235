#include "Tests/Simulation/LockObserver.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace lanternfold::simulation {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds timeout{500};
constexpr milliseconds pauseBetweenLooks{50};
constexpr std::chrono::sys_seconds epoch =
    std::chrono::sys_days(std::chrono::year(2001) / std::chrono::January / 1);

double secondsSince2001(std::chrono::system_clock::time_point moment) {
  return std::chrono::duration<double>(moment - epoch).count();
}

std::optional<double> numberIn(std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace

void LockObserver::began(const Turn& program) {
  State& state = states_[program.number()];
  if (state.holds || state.isTaking) return;
  state = {.isTaking = true,
           .beganAtWall = run_.clock.now(),
           .beganAt = run_.clock.steadyNow(),
           .heldUpBefore = program.heldUp()};
}

bool LockObserver::beginsAnotherStep(const Turn& program) const {
  const auto found = states_.find(program.number());
  if (found == states_.end()) return false;
  const State& state = found->second;
  const bool isOver = run_.clock.now() > state.beganAtWall + timeout ||
                      run_.clock.steadyNow() > state.beganAt + timeout;
  return state.holds || (state.isTaking && (state.lastLook == Look::free || isOver));
}

void LockObserver::looked(const Turn& program,
                          const std::expected<FileContents, std::error_code>& found) {
  State& state = states_[program.number()];
  const auto expiry = found ? numberIn(found->bytes) : std::nullopt;
  const double left = expiry ? *expiry - secondsSince2001(run_.clock.now()) : -1;
  const bool isLive = left > 0;
  if (!state.isTaking) return;
  if (isLive && (state.lastLook == Look::free || run_.clock.steadyNow() == state.beganAt)) {
    run_.log.add(Happening::lockContended, program.number());
  }
  if (expiry && !isLive) run_.log.add(Happening::lockTakenOverExpired, program.number());
  state.lastLook = std::abs(left) < 1e-6 ? Look::unclear : isLive ? Look::held : Look::free;
}

void LockObserver::foundMissing(const Turn& program) {
  states_[program.number()].lastLook = Look::free;
}

void LockObserver::removed(const Turn& program, bool succeeded) {
  State& state = states_[program.number()];
  if (state.holds) {
    state.holds = false;
    return;
  }
  checkTaking(program, "removed");
  state.anOperationFailed |= !succeeded;
}

void LockObserver::created(const Turn& program, bool succeeded) {
  checkTaking(program, "made");
  states_[program.number()].anOperationFailed |= !succeeded;
}

void LockObserver::written(const Turn& program, std::string_view text, bool succeeded) {
  State& state = states_[program.number()];
  checkTaking(program, "wrote");
  const auto expiry = numberIn(text);
  const double deadline = secondsSince2001(state.beganAtWall + timeout);
  const std::size_t point = text.find('.');
  if (!expiry || std::abs(*expiry - deadline) > 1e-6 || point == std::string_view::npos ||
      text.size() - point != 9) {
    run_.broken(program.number(), "wrote \"" + std::string(text) + "\" into the lock file, not " +
                                      std::to_string(deadline) + " with eight decimals");
  }
  if (!succeeded) {
    state.anOperationFailed = true;
    return;
  }
  checkWait(program);
  state.isTaking = false;
  state.holds = true;
  run_.log.add(Happening::lockTaken, program.number());
  for (const auto& [number, other] : states_) {
    if (number != program.number() && other.holds) {
      run_.log.add(Happening::twoHolders, program.number(), number);
    }
  }
}

void LockObserver::restsOrEnded(const Turn& program) {
  State& state = states_[program.number()];
  if (state.isTaking && !program.isKilled()) {
    checkWait(program);
    if (!state.anOperationFailed) run_.log.add(Happening::lockTimedOut, program.number());
    if (!state.anOperationFailed && state.lastLook == Look::free) {
      run_.broken(program.number(), "gave up waiting for a lock that it had found free");
    }
  }
  if (state.holds && program.isKilled()) {
    run_.log.add(Happening::killedHoldingLock, program.number());
  }
  state = {};
}

bool LockObserver::holds(const Turn& program) const {
  const auto found = states_.find(program.number());
  return found != states_.end() && found->second.holds;
}

bool LockObserver::isTaking(const Turn& program) const {
  const auto found = states_.find(program.number());
  return found != states_.end() && found->second.isTaking;
}

void LockObserver::checkTaking(const Turn& program, std::string_view what) {
  if (states_[program.number()].lastLook == Look::held) {
    run_.broken(program.number(),
                std::string(what) + " the lock file after a look that showed the lock to be held");
  }
}

void LockObserver::checkWait(const Turn& program) {
  const State& state = states_[program.number()];
  const auto waited = run_.clock.steadyNow() - state.beganAt;
  const auto own = waited - (program.heldUp() - state.heldUpBefore);
  if (own > timeout + pauseBetweenLooks) {
    run_.broken(program.number(), "waited " + spanText(own) + " for the lock");
  }
}

}  // namespace lanternfold::simulation
