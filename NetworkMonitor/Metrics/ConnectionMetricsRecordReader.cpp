#include "NetworkMonitor/Metrics/ConnectionMetricsRecordReader.h"

#include <algorithm>

namespace lanternfold {

void ConnectionMetricsRecordReader::begin(ConnectionMetrics& record) {
  record_ = &record;
  awaiting_ = nullptr;
  seen_ = {};
  next_ = 0;
  depth_ = 1;
  field_ = {};
}

ConnectionMetricsRecordReader::Verdict ConnectionMetricsRecordReader::key(std::string_view key) {
  if (depth_ > 1) return std::nullopt;
  awaiting_ = nullptr;
  if (next_ >= seen_.size() || connectionMetricsFields[next_].key != key) {
    const auto found =
        std::ranges::find(connectionMetricsFields, key, &ConnectionMetricsField::key);
    if (found == connectionMetricsFields.end()) return std::nullopt;
    next_ = static_cast<std::size_t>(found - connectionMetricsFields.begin());
  }
  awaiting_ = &connectionMetricsFields[next_];
  field_ = awaiting_->key;
  if (seen_[next_]) return Fault::duplicateKey;
  seen_[next_++] = true;
  return std::nullopt;
}

ConnectionMetricsRecordReader::Verdict ConnectionMetricsRecordReader::scalar(
    std::optional<std::uint64_t> number) {
  if (depth_ > 1 || awaiting_ == nullptr) return std::nullopt;
  if (!number) return Fault::notAnUnsignedInteger;
  record_->*awaiting_->member = *number;
  return std::nullopt;
}

ConnectionMetricsRecordReader::Verdict ConnectionMetricsRecordReader::open() {
  if (depth_ == 1 && awaiting_ != nullptr) return Fault::notAnUnsignedInteger;
  if (depth_ > deepestConnectionMetricsJson) return Fault::tooDeep;
  ++depth_;
  return std::nullopt;
}

ConnectionMetricsRecordReader::Verdict ConnectionMetricsRecordReader::close() {
  if (--depth_ > 0) return std::nullopt;
  field_ = {};
  const auto missing = std::ranges::find(seen_, false);
  if (missing == seen_.end()) return std::nullopt;
  field_ = connectionMetricsFields[static_cast<std::size_t>(missing - seen_.begin())].key;
  return Fault::missingKey;
}

}  // namespace lanternfold
