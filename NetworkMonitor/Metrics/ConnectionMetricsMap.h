// A map from interface name to counters, in the order of the names.
//
// Made by: the counter readers. Read by: the interface resolver, the recorder, the command line.
// The names stand in a table of their own that several maps may share: a reader that samples the
// same interfaces again and again copies no name and allocates once per reading.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "NetworkMonitor/Metrics/ConnectionMetrics.h"

namespace lanternfold {

class ConnectionMetricsMap {
 public:
  using Names = std::vector<std::string>;

  ConnectionMetricsMap();
  /// Takes names that are sorted and distinct, and one record for each; stops the program when the
  /// counts differ.
  ConnectionMetricsMap(std::shared_ptr<const Names> sortedNames,
                       std::vector<ConnectionMetrics> values);

  /// The counters of `name`, or null. Valid until the map changes.
  [[nodiscard]] const ConnectionMetrics* find(std::string_view name) const;
  /// Stores the counters of `name`, in the place of earlier ones.
  void insertOrAssign(std::string_view name, const ConnectionMetrics& metrics);

  [[nodiscard]] std::size_t size() const { return values_.size(); }
  [[nodiscard]] bool empty() const { return values_.empty(); }
  /// In ascending order of the names' bytes; `value(i)` belongs to `name(i)`.
  [[nodiscard]] const std::string& name(std::size_t position) const { return (*names_)[position]; }
  [[nodiscard]] const ConnectionMetrics& value(std::size_t position) const {
    return values_[position];
  }

  friend bool operator==(const ConnectionMetricsMap& left, const ConnectionMetricsMap& right);

 private:
  std::shared_ptr<const Names> names_;
  std::vector<ConnectionMetrics> values_;
};

}  // namespace lanternfold
