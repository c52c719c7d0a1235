#include "NetworkMonitor/Metrics/ConnectionMetricsRecorder.h"

#include <algorithm>
#include <utility>

#include "NetworkMonitor/Metrics/SamplingStep.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

/// An interval beyond any program's life, which still fits the clock.
constexpr std::chrono::duration<double> longestPeriod = std::chrono::years(100);

std::chrono::nanoseconds periodOf(std::chrono::duration<double> interval) {
  const auto period =
      std::chrono::duration_cast<std::chrono::nanoseconds>(std::min(interval, longestPeriod));
  return std::max(period, std::chrono::nanoseconds(1));
}

}  // namespace

std::shared_ptr<ConnectionMetricsRecorder> ConnectionMetricsRecorder::make(
    std::shared_ptr<ConnectionMetricsStorage> storage,
    std::shared_ptr<ConnectionMetricsReader> reader, DateUtils dateUtils,
    std::shared_ptr<const ConnectionBandwidthAnalyzer> analyzer, Environment environment) {
  // The constructor is private: a recorder that no shared pointer holds would never sample.
  return std::shared_ptr<ConnectionMetricsRecorder>(
      new ConnectionMetricsRecorder(std::move(storage), std::move(reader), dateUtils,
                                    std::move(analyzer), std::move(environment)));
}

ConnectionMetricsRecorder::ConnectionMetricsRecorder(
    std::shared_ptr<ConnectionMetricsStorage> storage,
    std::shared_ptr<ConnectionMetricsReader> reader, DateUtils dateUtils,
    std::shared_ptr<const ConnectionBandwidthAnalyzer> analyzer, Environment environment)
    : storage_(std::move(storage)),
      reader_(std::move(reader)),
      dateUtils_(dateUtils),
      analyzer_(std::move(analyzer)),
      environment_(std::move(environment)),
      queue_(environment_.dispatch.serialQueue(queueLabel, QualityOfService::background)) {}

bool ConnectionMetricsRecorder::isStarted() const {
  const std::lock_guard lock(mutex_);
  return timer_.has_value();
}

void ConnectionMetricsRecorder::start() {
  const std::lock_guard lock(mutex_);
  beginSchedule(FirstTick::samples);
}

void ConnectionMetricsRecorder::stop() {
  const std::lock_guard lock(mutex_);
  timer_.reset();
}

std::chrono::duration<double> ConnectionMetricsRecorder::interval() const {
  const std::lock_guard lock(mutex_);
  return interval_;
}

void ConnectionMetricsRecorder::setInterval(std::chrono::duration<double> interval) {
  const bool isAboveZero = interval.count() > 0;  // false of what is no number, too
  if (!isAboveZero) fatalError("a sampling interval was set that is not above zero");
  const std::lock_guard lock(mutex_);
  interval_ = interval;
  if (timer_) beginSchedule(FirstTick::isSkipped);
}

void ConnectionMetricsRecorder::beginSchedule(FirstTick firstTick) {
  timer_.emplace(queue_, environment_.clock, periodOf(interval_),
                 [weak = weak_from_this(), firstTick, tick = std::uint64_t{0}]() mutable {
                   const bool samples = tick > 0 || firstTick == FirstTick::samples;
                   if (samples) {
                     if (const auto recorder = weak.lock()) recorder->sampleAndReportFailure();
                   }
                   ++tick;
                 });
}

void ConnectionMetricsRecorder::once(Completion completion) {
  queue_.async([self = shared_from_this(), completion = std::move(completion)]() mutable {
    Metrics outcome = self->sample();
    self->environment_.dispatch.mainQueue().async(
        [outcome = std::move(outcome), completion = std::move(completion)]() mutable {
          completion(std::move(outcome));
        });
  });
}

ConnectionMetricsRecorder::Metrics ConnectionMetricsRecorder::onceSync() {
  // What remains when the program ends meanwhile: nothing was read.
  Metrics outcome = std::unexpected(ConnectionMetricsReaderError::failedGetIf);
  queue_.sync([this, &outcome] { outcome = sample(); });
  return outcome;
}

std::optional<ConnectionMetrics> ConnectionMetricsRecorder::metrics(
    std::string_view interfaceName) {
  std::optional<ConnectionMetrics> stored;
  queue_.sync([this, &stored, interfaceName] {
    stored = storage_->metrics(interfaceName, ConnectionMetricsType::adjusted);
  });
  return stored;
}

ConnectionMetricsMap ConnectionMetricsRecorder::allMetrics() {
  ConnectionMetricsMap stored;
  queue_.sync([this, &stored] { stored = storage_->allMetrics(ConnectionMetricsType::adjusted); });
  return stored;
}

ConnectionBandwidthClass ConnectionMetricsRecorder::currentBandwidthClass() const {
  const std::lock_guard lock(mutex_);
  return currentBandwidthClass_;
}

ConnectionMetricsRecorder::Metrics ConnectionMetricsRecorder::sample() {
  assertOnQueue(queue_);
  const auto position =
      firstMetricsRead_ ? SamplingStep::Position::later : SamplingStep::Position::first;
  SamplingStep step({*storage_, *reader_, dateUtils_, *analyzer_}, position);
  auto outcome = step.take();
  if (!outcome) return std::unexpected(std::move(outcome).error());
  adopt(outcome->bandwidthClass);
  firstMetricsRead_ = true;
  return std::move(outcome->adjusted);
}

void ConnectionMetricsRecorder::sampleAndReportFailure() {
  const Metrics outcome = sample();
  if (outcome) return;
  environment_.diagnostics.line("Failed to save storage: " + environment_.explain(outcome.error()));
}

void ConnectionMetricsRecorder::adopt(ConnectionBandwidthClass bandwidthClass) {
  {
    const std::lock_guard lock(mutex_);
    if (std::exchange(currentBandwidthClass_, bandwidthClass) == bandwidthClass) return;
  }
  events_.send(Event::bandwidthClassChange());
}

}  // namespace lanternfold
