// Puts a counter record together from what a JSON parser reports of the object that it is.
//
// Read by: the decoders of the storages' file.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "NetworkMonitor/Metrics/ConnectionMetrics.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsFields.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsJson.h"

namespace lanternfold {

/// Reads one record after another. Every operation returns what is wrong, or none.
class ConnectionMetricsRecordReader {
 public:
  using Fault = ConnectionMetricsJsonError::Fault;
  using Verdict = std::optional<Fault>;

  /// The record's object begins. Its fields are written to `record` as they come.
  void begin(ConnectionMetrics& record);

  [[nodiscard]] Verdict key(std::string_view key);
  /// A value that is no object and no array; `number` is that of an unsigned integer.
  [[nodiscard]] Verdict scalar(std::optional<std::uint64_t> number);
  /// An object or an array begins within the record.
  [[nodiscard]] Verdict open();
  /// An object or an array ends; the record itself when `isInside` is false afterwards.
  [[nodiscard]] Verdict close();

  [[nodiscard]] bool isInside() const { return depth_ > 0; }
  /// The field to blame for the last verdict, or read last within this record; else empty.
  [[nodiscard]] std::string_view field() const { return field_; }

 private:
  ConnectionMetrics* record_ = nullptr;
  const ConnectionMetricsField* awaiting_ = nullptr;  // whose value comes next; null for other keys
  std::array<bool, connectionMetricsFields.size()> seen_{};
  std::size_t next_ = 0;  // the field that comes next where they stand in the order of the record
  int depth_ = 0;
  std::string_view field_;
};

}  // namespace lanternfold
