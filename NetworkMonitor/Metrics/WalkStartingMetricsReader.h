// Counters of which every read is a walk of its own.
//
// Made by: the wiring of the monitor, for whoever reads the counters without the interfaces.
#pragma once

#include <memory>
#include <utility>

#include "NetworkMonitor/Metrics/RememberingMetricsReader.h"

namespace lanternfold {

/// Any thread.
class WalkStartingMetricsReader final : public ConnectionMetricsReader {
 public:
  explicit WalkStartingMetricsReader(std::shared_ptr<RememberingMetricsReader> reader)
      : reader_(std::move(reader)) {}

  [[nodiscard]] bool is32bitCapped() const override { return reader_->is32bitCapped(); }
  [[nodiscard]] std::expected<ConnectionMetricsMap, ConnectionMetricsError> read() override {
    reader_->beginWalk();
    return reader_->read();
  }

 private:
  const std::shared_ptr<RememberingMetricsReader> reader_;
};

}  // namespace lanternfold
