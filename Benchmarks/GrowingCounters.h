// Prepared counters that grow from reading to reading.
//
// Made by: the benchmarks of the sampling step and of the metrics file.
#pragma once

#include <algorithm>
#include <cstddef>
#include <expected>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "NetworkMonitor/Metrics/ConnectionMetricsReader.h"

namespace lanternfold {

/// Of `count` interfaces, with figures as long as those of a machine that has been up for weeks. A
/// reading costs one allocation, as with the production reader. Capped, because carrying counters
/// forward is the longer way through a sampling step.
class GrowingCounters final : public ConnectionMetricsReader {
 public:
  explicit GrowingCounters(std::size_t count) {
    auto names = std::make_shared<ConnectionMetricsMap::Names>();
    for (std::size_t i = 0; i < count; ++i) names->push_back("en" + std::to_string(i));
    std::ranges::sort(*names);
    names_ = std::move(names);
    values_.assign(count, {.sentBytes = 1'234'567'890,
                           .recvBytes = 3'456'789'012,
                           .sentError = 12,
                           .recvError = 345,
                           .sentPacket = 9'876'543,
                           .recvPacket = 23'456'789,
                           .collisions = 0,
                           .mtu = 1500});
  }

  [[nodiscard]] bool is32bitCapped() const override { return true; }

  [[nodiscard]] std::expected<ConnectionMetricsMap, ConnectionMetricsError> read() override {
    for (ConnectionMetrics& value : values_) {
      value.sentBytes += 1'500;
      value.recvBytes += 64'000;
      value.sentPacket += 10;
      value.recvPacket += 50;
    }
    return ConnectionMetricsMap(names_, values_);
  }

 private:
  std::shared_ptr<const ConnectionMetricsMap::Names> names_;
  std::vector<ConnectionMetrics> values_;
};

}  // namespace lanternfold
