#include "NetworkMonitor/Metrics/RecordedConnectionMetricsReader.h"

#include <utility>

#include "Support/FatalError.h"

namespace lanternfold {

RecordedConnectionMetricsReader::RecordedConnectionMetricsReader(
    std::shared_ptr<ConnectionMetricsRecorder> recorder)
    : recorder_(std::move(recorder)) {}

RecordedConnectionMetricsReader::~RecordedConnectionMetricsReader() {
  if (recorderAutostartEnabled_ && recorder_->isStarted()) recorder_->stop();
}

std::expected<ConnectionMetricsMap, ConnectionMetricsError>
RecordedConnectionMetricsReader::read() {
  startRecorderIfNeeded();
  if (const auto sampled = recorder_->onceSync(); !sampled) return sampled;
  return recorder_->allMetrics();
}

void RecordedConnectionMetricsReader::read(ConnectionMetricsRecorder::Completion completion) {
  if (startRecorderIfNeeded()) {
    completion(recorder_->allMetrics());
  } else {
    recorder_->once(std::move(completion));
  }
}

bool RecordedConnectionMetricsReader::recorderAutostartEnabled() const {
  const std::lock_guard lock(mutex_);
  return recorderAutostartEnabled_;
}

void RecordedConnectionMetricsReader::setRecorderAutostartEnabled(bool enabled) {
  const std::lock_guard lock(mutex_);
  recorderAutostartEnabled_ = enabled;
}

std::chrono::seconds RecordedConnectionMetricsReader::intervalOf(
    ConnectionBandwidthClass bandwidthClass) {
  switch (bandwidthClass) {
    case ConnectionBandwidthClass::idle:
      return std::chrono::seconds(120);
    case ConnectionBandwidthClass::low:
      return std::chrono::seconds(60);
    case ConnectionBandwidthClass::high:
      return std::chrono::seconds(30);
    case ConnectionBandwidthClass::veryHigh:
      return std::chrono::seconds(15);
  }
  fatalError("a bandwidth class is none of the known ones");
}

std::optional<std::chrono::seconds> RecordedConnectionMetricsReader::intervalAfter(
    const ConnectionMetricsRecorder::Event& event, ConnectionBandwidthClass bandwidthClass) {
  if (event != ConnectionMetricsRecorder::Event::bandwidthClassChange()) return std::nullopt;
  return intervalOf(bandwidthClass);
}

bool RecordedConnectionMetricsReader::startRecorderIfNeeded() {
  // One lock over the look and the start: of two threads that read at the same time one starts.
  const std::lock_guard lock(mutex_);
  if (!recorderAutostartEnabled_ || recorder_->isStarted()) return false;
  eventsSubscription_ = followBandwidthClass();
  recorder_->start();
  return true;
}

Subscription RecordedConnectionMetricsReader::followBandwidthClass() {
  // Weak: the recorder holds its subscribers.
  const std::weak_ptr weak = recorder_;
  return recorder_->eventsPublisher().subscribe(
      [weak](const ConnectionMetricsRecorder::Event& event) {
        const auto recorder = weak.lock();
        if (recorder == nullptr) return;
        const auto interval = intervalAfter(event, recorder->currentBandwidthClass());
        if (interval) recorder->setInterval(*interval);
      });
}

}  // namespace lanternfold
