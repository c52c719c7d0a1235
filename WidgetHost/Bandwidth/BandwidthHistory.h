// The last minute of some adapters' traffic, from readings of their counters.
//
// Made by: `BandwidthMonitorModel`, which reads once a second. Pure: the time comes with a reading.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "NetworkMonitor/Metrics/ConnectionBandwidthAnalyzer.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsMap.h"
#include "WidgetHost/Bandwidth/TrafficRate.h"

namespace lanternfold {

/// Seconds are counted from the first reading, and from the first one after an interruption; a
/// reading belongs to the one that it is nearest to, since timers are late by a little. A second
/// without a reading is a gap. What follows is the mean since the reading before it, unless that
/// was a minute ago or more.
class BandwidthHistory {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  /// `analyzer` outlives the history. `is32bitCapped` as the reader says: such counters are carried
  /// forward across a wrap. Others that go back have been reset, which leaves a gap.
  BandwidthHistory(const ConnectionBandwidthAnalyzer& analyzer, bool is32bitCapped);

  /// The adapters to remember from now on; those that were not among them begin with the last
  /// reading, those that are not any more are forgotten.
  void watch(const std::vector<std::string>& names);

  /// What the counters were at `time`, which is not before that of the last reading. An adapter
  /// that is not in `reading` is gone; when it is back, its counters are new ones.
  void add(TimePoint time, const ConnectionMetricsMap& reading);
  /// The counters could not be read at `time`.
  void addFailure(TimePoint time);

  /// What happens until the next reading is not to be measured: the machine sleeps, or nobody
  /// looks.
  void interrupt();

  /// As of the last reading; of an adapter that is not watched, nothing.
  [[nodiscard]] AdapterTraffic trafficOf(std::string_view name) const;

 private:
  struct Reading {
    TimePoint time;
    ConnectionMetrics original;  ///< as it was read
    ConnectionMetrics adjusted;  ///< carried forward, where that is done
  };
  struct Adapter {
    std::vector<Reading> recent;  ///< without a break, the oldest first; what the class is made of
    AdapterTraffic traffic;
  };

  /// Moves the minute on to `time`; false when it is in the second of the last reading still.
  [[nodiscard]] bool beginSecond(TimePoint time);
  /// What was read of the adapter at `time`; null when it is gone.
  void addTo(Adapter& adapter, TimePoint time, const ConnectionMetrics* counters) const;
  [[nodiscard]] Reading continued(const Adapter& adapter, TimePoint time,
                                  const ConnectionMetrics& counters) const;
  [[nodiscard]] std::optional<ConnectionBandwidthClass> classOf(const Adapter& adapter) const;

  const ConnectionBandwidthAnalyzer& analyzer_;
  const bool is32bitCapped_;
  struct WholeReading {
    TimePoint time;
    ConnectionMetricsMap counters;
  };

  std::optional<WholeReading> last_;  ///< none after a failure and an interruption
  std::optional<TimePoint> start_;    ///< of second 0; none before the first reading
  std::int64_t second_ = -1;          ///< of the last reading
  bool mustCountAnew_ = false;        ///< the next reading stands in the middle of its second
  std::map<std::string, Adapter, std::less<>> adapters_;
};

}  // namespace lanternfold
