// Samples the counters of every interface again and again, remembers them, and tells when the
// traffic becomes busier or quieter.
//
// Made by: `ConnectionMetricsRecorders` or the composition. Read by: the counter reader over it.
#pragma once

#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "NetworkMonitor/Metrics/ConnectionBandwidthAnalyzer.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsError.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsReader.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsStorage.h"
#include "NetworkMonitor/Metrics/DateUtils.h"
#include "Platform/Clock.h"
#include "Platform/DiagnosticLog.h"
#include "Platform/Dispatch.h"
#include "Platform/RepeatingTimer.h"
#include "Support/Subject.h"

namespace lanternfold {

/// All recorders of a program share one serial queue of background work: every sample and every
/// access to a storage runs there, so a storage that several recorders have needs no lock of its
/// own. Any thread may call, except that what blocks must not be called on that queue, which stops
/// the program. Nobody is called with a lock held.
///
/// A released recorder stops sampling: its schedule knows it weakly. The last reference may go
/// anywhere, on the recorder queue too.
class ConnectionMetricsRecorder final
    : public std::enable_shared_from_this<ConnectionMetricsRecorder> {
 public:
  /// What subscribers get.
  struct Event {
    std::string rawValue;

    /// The class of the traffic is another one than before.
    [[nodiscard]] static Event bandwidthClassChange() { return {"bandwidth_class_change"}; }

    friend bool operator==(const Event&, const Event&) = default;
  };

  /// What is said of a sample that failed. On the recorder's queue.
  using Explanation = std::function<std::string(const ConnectionMetricsError&)>;

  /// All outlive the recorder.
  struct Environment {
    Dispatch& dispatch;
    const Clock& clock;
    DiagnosticLog& diagnostics;
    /// A program that knows the storage's files says which one is in the way.
    Explanation explain = [](const ConnectionMetricsError& error) { return describe(error); };
  };

  /// By interface name.
  using Metrics = std::expected<ConnectionMetricsMap, ConnectionMetricsError>;
  using Completion = std::move_only_function<void(Metrics)>;

  static constexpr std::string_view queueLabel =
      "net.quernaple.NetworkMonitor.ConnectionMetricsRecorder";
  static constexpr std::chrono::duration<double> defaultInterval{120.0};

  /// None of the pointers is null.
  [[nodiscard]] static std::shared_ptr<ConnectionMetricsRecorder> make(
      std::shared_ptr<ConnectionMetricsStorage> storage,
      std::shared_ptr<ConnectionMetricsReader> reader, DateUtils dateUtils,
      std::shared_ptr<const ConnectionBandwidthAnalyzer> analyzer, Environment environment);

  ConnectionMetricsRecorder(const ConnectionMetricsRecorder&) = delete;
  ConnectionMetricsRecorder& operator=(const ConnectionMetricsRecorder&) = delete;

  [[nodiscard]] bool isStarted() const;

  /// Samples at once and then whenever the interval has passed. An earlier schedule is cancelled.
  void start();

  /// Ends the schedule; a sample that is running is completed.
  void stop();

  /// Seconds between samples.
  [[nodiscard]] std::chrono::duration<double> interval() const;

  /// Stores the interval; a started recorder begins its schedule anew, with the first sample after
  /// one interval. Stops the program when it is not above zero.
  void setInterval(std::chrono::duration<double> interval);

  /// Takes one sample in the background and calls `completion` on the main queue, exactly once and
  /// never before the return, with the adjusted counters of the interfaces that were read. The
  /// recorder lives until the sample is taken. (Work that a program which ends leaves undone is
  /// destroyed, `completion` too.)
  void once(Completion completion);

  /// The same while the caller waits; not on the recorder queue.
  [[nodiscard]] Metrics onceSync();

  // The stored adjusted counters, those of interfaces that are gone included, while the caller
  // waits; not on the recorder queue.
  [[nodiscard]] std::optional<ConnectionMetrics> metrics(std::string_view interfaceName);
  [[nodiscard]] ConnectionMetricsMap allMetrics();

  /// Events are sent on the recorder queue. A change of the class is one event, sent at the end of
  /// the sample that found it.
  [[nodiscard]] Publisher<Event>& eventsPublisher() { return events_; }

  /// Of the last completed sample; idle before the first.
  [[nodiscard]] ConnectionBandwidthClass currentBandwidthClass() const;

 private:
  enum class FirstTick { samples, isSkipped };

  ConnectionMetricsRecorder(std::shared_ptr<ConnectionMetricsStorage> storage,
                            std::shared_ptr<ConnectionMetricsReader> reader, DateUtils dateUtils,
                            std::shared_ptr<const ConnectionBandwidthAnalyzer> analyzer,
                            Environment environment);

  void beginSchedule(FirstTick firstTick);  // with mutex_ held

  // On the recorder queue:
  [[nodiscard]] Metrics sample();
  void sampleAndReportFailure();
  void adopt(ConnectionBandwidthClass bandwidthClass);

  const std::shared_ptr<ConnectionMetricsStorage> storage_;  // used on the recorder queue alone
  const std::shared_ptr<ConnectionMetricsReader> reader_;
  const DateUtils dateUtils_;
  const std::shared_ptr<const ConnectionBandwidthAnalyzer> analyzer_;
  const Environment environment_;
  DispatchQueue& queue_;

  /// A sample was completed; used on the recorder queue alone.
  bool firstMetricsRead_ = false;

  mutable std::mutex mutex_;
  std::optional<RepeatingTimer> timer_;                       // guarded by mutex_
  std::chrono::duration<double> interval_ = defaultInterval;  // guarded by mutex_
  ConnectionBandwidthClass currentBandwidthClass_ = ConnectionBandwidthClass::idle;  // the same

  Subject<Event> events_;
};

}  // namespace lanternfold
