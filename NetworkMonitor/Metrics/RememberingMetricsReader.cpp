#include "NetworkMonitor/Metrics/RememberingMetricsReader.h"

#include <system_error>
#include <utility>
#include <variant>

#include "Support/FatalError.h"

namespace lanternfold {

namespace {

/// The lock is given back after the sample has been saved.
bool lostOnlyItsLock(const ConnectionMetricsError& error) {
  const auto* lock = std::get_if<LockError>(&error);
  return lock != nullptr && lock->value == LockError::Case::alreadyUnlocked;
}

/// Another program took the lock at the same moment, and removed the file that was to be written.
bool lostARaceForTheLock(const ConnectionMetricsError& error) {
  const auto* lock = std::get_if<LockError>(&error);
  return lock != nullptr && lock->value == LockError::Case::lockFailed && lock->underlying &&
         *lock->underlying == std::errc::no_such_file_or_directory;
}

bool isHeldLock(const ConnectionMetricsError& error) {
  const auto* lock = std::get_if<LockError>(&error);
  return lock != nullptr && lock->value == LockError::Case::lockTimeout;
}

}  // namespace

std::optional<ConnectionMetricsError> HeldLockMemory::recall(
    const FileLock& lock, std::chrono::steady_clock::time_point now) const {
  std::optional<ConnectionMetricsError> error;
  {
    const std::scoped_lock guard(mutex_);
    const auto wait = waits_.find(lock.url());
    if (wait == waits_.end() || wait->second.recalledUntil <= now) return std::nullopt;
    error = wait->second.error;
  }
  return lock.isLocked() ? error : std::nullopt;
}

void HeldLockMemory::remember(const FileLock& lock, ConnectionMetricsError error,
                              std::chrono::steady_clock::time_point now) {
  const std::scoped_lock guard(mutex_);
  waits_.insert_or_assign(lock.url(), Wait{.error = std::move(error), .recalledUntil = now + span});
}

RememberingMetricsReader::RememberingMetricsReader(
    std::expected<Recorded, std::string> recorded,
    std::shared_ptr<ConnectionMetricsReader> kernelReader, const Environment& environment)
    : recorded_(std::move(recorded)),
      kernelReader_(std::move(kernelReader)),
      environment_(environment) {
  if (kernelReader_->is32bitCapped()) {
    fatalError("32-bit counters were to stand in for adjusted ones, which they do not equal");
  }
}

RememberingMetricsReader::Reading RememberingMetricsReader::read() {
  const std::scoped_lock guard(mutex_);
  if (ofThisWalk_) return *ofThisWalk_;
  if (auto reading = remembered()) {
    ofThisWalk_ = *std::move(reading);
    return *ofThisWalk_;
  }
  auto counters = kernelReader_->read();
  if (counters) ofThisWalk_ = counters;
  return counters;
}

void RememberingMetricsReader::beginWalk() {
  const std::scoped_lock guard(mutex_);
  ofThisWalk_.reset();
}

std::optional<RememberingMetricsReader::Reading> RememberingMetricsReader::remembered() {
  if (nextSample_ && environment_.clock.steadyNow() < *nextSample_) {
    if (heldLock_) return std::unexpected(*heldLock_);
    return std::nullopt;
  }
  heldLock_.reset();
  if (!recorded_) {
    reportOnce("Traffic is shown but not recorded: " + recorded_.error());
    nextSample_ = environment_.clock.steadyNow() + pauseAfterFailure;
    return std::nullopt;
  }
  return sampled();
}

std::optional<RememberingMetricsReader::Reading> RememberingMetricsReader::sampled() {
  const auto held = waitedForInVain();
  auto reading = held ? Reading(std::unexpect, *held) : recorded_->reader->read();
  if (!reading && lostARaceForTheLock(reading.error())) reading = recorded_->reader->read();
  const bool isKept = reading || lostOnlyItsLock(reading.error());
  nextSample_ = environment_.clock.steadyNow() +
                (isKept ? std::chrono::nanoseconds(shortestPause) : pauseAfterFailure);
  if (reading) return reading;
  if (isKept) return std::nullopt;
  const std::string reason = recorded_->explain(reading.error());
  if (environment_.whileLocked == WhileLocked::failure && isHeldLock(reading.error())) {
    heldLock_ = reading.error();
    if (environment_.heldLocks && recorded_->lock && !held) {
      environment_.heldLocks->remember(*recorded_->lock, reading.error(),
                                       environment_.clock.steadyNow());
    }
    reportOnce("Adapters are left out this time, since their traffic cannot be read: " + reason);
    return reading;
  }
  reportOnce("Traffic is shown but not recorded: " + reason);
  return std::nullopt;
}

std::optional<ConnectionMetricsError> RememberingMetricsReader::waitedForInVain() const {
  if (!environment_.heldLocks || !recorded_->lock) return std::nullopt;
  return environment_.heldLocks->recall(*recorded_->lock, environment_.clock.steadyNow());
}

void RememberingMetricsReader::reportOnce(const std::string& line) {
  if (std::exchange(isReported_, true)) return;
  environment_.diagnostics.line(line);
}

}  // namespace lanternfold
