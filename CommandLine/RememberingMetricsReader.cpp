#include "CommandLine/RememberingMetricsReader.h"

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

}  // namespace

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

std::expected<ConnectionMetricsMap, ConnectionMetricsError> RememberingMetricsReader::read() {
  const std::scoped_lock guard(mutex_);
  if (ofThisWalk_) return *ofThisWalk_;
  ofThisWalk_ = remembered();
  if (ofThisWalk_) return *ofThisWalk_;
  auto counters = kernelReader_->read();
  if (counters) ofThisWalk_ = *counters;
  return counters;
}

void RememberingMetricsReader::beginWalk() {
  const std::scoped_lock guard(mutex_);
  ofThisWalk_.reset();
}

std::optional<ConnectionMetricsMap> RememberingMetricsReader::remembered() {
  if (nextSample_ && environment_.clock.steadyNow() < *nextSample_) return std::nullopt;
  auto sampled = sample();
  const bool isKept = sampled || !sampled.error();
  nextSample_ = environment_.clock.steadyNow() +
                (isKept ? std::chrono::nanoseconds(shortestPause) : pauseAfterFailure);
  if (sampled) return *std::move(sampled);
  if (!isKept) reportOnce(*sampled.error());
  return std::nullopt;
}

std::expected<ConnectionMetricsMap, std::optional<std::string>> RememberingMetricsReader::sample() {
  if (!recorded_) return std::unexpected(recorded_.error());
  auto read = recorded_->reader->read();
  if (read) return *std::move(read);
  if (lostOnlyItsLock(read.error())) return std::unexpected(std::nullopt);
  return std::unexpected(recorded_->explain(read.error()));
}

void RememberingMetricsReader::reportOnce(const std::string& reason) {
  if (std::exchange(isReported_, true)) return;
  environment_.diagnostics.line("Traffic is shown but not recorded: " + reason);
}

}  // namespace lanternfold
