// A counter reader that holds the counters a test sets, counts its reads and fails on demand.
#pragma once

#include <cstddef>
#include <expected>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "NetworkMonitor/Metrics/ConnectionMetricsReader.h"

namespace lanternfold {

class FakeConnectionMetricsReader final : public ConnectionMetricsReader {
 public:
  void set(std::string name, const ConnectionMetrics& metrics) {
    std::vector<ConnectionMetricsMap::Entry> entries;
    for (std::size_t position = 0; position < counters_.size(); ++position) {
      entries.push_back({counters_.name(position), counters_.value(position)});
    }
    entries.push_back({std::move(name), metrics});
    counters_ = ConnectionMetricsMap::of(std::move(entries));
  }
  void setCounters(ConnectionMetricsMap counters) { counters_ = std::move(counters); }
  void setFailing(bool failing) { failing_ = failing; }
  void set32bitCapped(bool capped) { capped_ = capped; }
  /// Runs at the beginning of every read, after it was counted; may change counters and failing.
  void beforeReading(std::function<void()> work) { beforeReading_ = std::move(work); }

  [[nodiscard]] std::size_t readCount() const { return readCount_; }

  [[nodiscard]] bool is32bitCapped() const override { return capped_; }
  [[nodiscard]] std::expected<ConnectionMetricsMap, ConnectionMetricsError> read() override {
    ++readCount_;
    if (beforeReading_) beforeReading_();
    if (failing_) return std::unexpected(ConnectionMetricsReaderError::failedGetIf);
    return counters_;
  }

 private:
  ConnectionMetricsMap counters_;
  bool failing_ = false;
  bool capped_ = false;
  std::function<void()> beforeReading_;
  std::size_t readCount_ = 0;
};

}  // namespace lanternfold
