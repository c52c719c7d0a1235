#include "CommandLine/RememberingMetricsReader.h"

#include <utility>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

ConnectionMetricsError noFolder() {
  return MetricsSaveError{"there is no folder to keep it in; choose one with --data-dir"};
}

}  // namespace

RememberingMetricsReader::RememberingMetricsReader(
    std::shared_ptr<ConnectionMetricsReader> recordedReader,
    std::shared_ptr<ConnectionMetricsReader> kernelReader, const Environment& environment)
    : recordedReader_(std::move(recordedReader)),
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
  auto sample = recordedReader_ ? recordedReader_->read() : std::unexpected(noFolder());
  nextSample_ = environment_.clock.steadyNow() +
                (sample ? std::chrono::nanoseconds(shortestPause) : pauseAfterFailure);
  if (sample) return *std::move(sample);
  reportOnce(describe(sample.error()));
  return std::nullopt;
}

void RememberingMetricsReader::reportOnce(const std::string& reason) {
  if (std::exchange(isReported_, true)) return;
  environment_.diagnostics.line("Traffic is shown but not recorded: " + reason);
}

}  // namespace lanternfold
