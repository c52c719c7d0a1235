// Adjusted counters through the ordinary counter reader, from a recorder that samples the more
// often, the busier the traffic.
//
// Made by: the composition, over a recorder. Read by: the interface resolver, the widgets.
#pragma once

#include <chrono>
#include <expected>
#include <memory>
#include <mutex>
#include <optional>

#include "NetworkMonitor/Metrics/ConnectionMetricsReader.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsRecorder.h"
#include "Support/Subscription.h"

namespace lanternfold {

/// Any thread but the recorder queue, which both ways to read wait for.
class RecordedConnectionMetricsReader final : public ConnectionMetricsReader {
 public:
  /// `recorder` is not null.
  explicit RecordedConnectionMetricsReader(std::shared_ptr<ConnectionMetricsRecorder> recorder);
  /// Stops a started recorder when it starts by itself.
  ~RecordedConnectionMetricsReader() override;
  RecordedConnectionMetricsReader(const RecordedConnectionMetricsReader&) = delete;
  RecordedConnectionMetricsReader& operator=(const RecordedConnectionMetricsReader&) = delete;

  /// False, always: adjusted counters do not wrap.
  [[nodiscard]] bool is32bitCapped() const override { return false; }

  /// Starts the recorder if needed, takes a sample, and returns everything stored, interfaces that
  /// are gone included. Fails as the sample does.
  [[nodiscard]] std::expected<ConnectionMetricsMap, ConnectionMetricsError> read() override;

  /// When this starts the recorder: calls `completion` before the return with what is stored
  /// already. Otherwise takes a sample in the background, whose outcome `completion` gets on the
  /// main queue.
  void read(ConnectionMetricsRecorder::Completion completion);

  /// Whether reading starts a recorder that is not started, and the end of the reader stops it.
  [[nodiscard]] bool recorderAutostartEnabled() const;
  void setRecorderAutostartEnabled(bool enabled);

  /// How often to sample traffic of this class.
  [[nodiscard]] static std::chrono::seconds intervalOf(ConnectionBandwidthClass bandwidthClass);

  /// What an event of a recorder whose class is `bandwidthClass` makes of its interval; none when
  /// the event is about something else.
  [[nodiscard]] static std::optional<std::chrono::seconds> intervalAfter(
      const ConnectionMetricsRecorder::Event& event, ConnectionBandwidthClass bandwidthClass);

 private:
  /// Returns whether it did.
  bool startRecorderIfNeeded();
  [[nodiscard]] Subscription followBandwidthClass();

  const std::shared_ptr<ConnectionMetricsRecorder> recorder_;

  mutable std::mutex mutex_;
  Subscription eventsSubscription_;       // guarded by mutex_
  bool recorderAutostartEnabled_ = true;  // guarded by mutex_
};

}  // namespace lanternfold
