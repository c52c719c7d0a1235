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

  struct Entry {
    std::string name;
    ConnectionMetrics metrics;

    friend bool operator==(const Entry&, const Entry&) = default;
  };

  ConnectionMetricsMap();
  /// Takes names in ascending order of their bytes, each once, and one record for each. Stops the
  /// program when the counts differ; the order is the caller's duty and is not looked at, because
  /// the same table of names comes with every reading.
  ConnectionMetricsMap(std::shared_ptr<const Names> sortedNames,
                       std::vector<ConnectionMetrics> values);

  /// Of entries in any order; of several with one name the last one counts.
  [[nodiscard]] static ConnectionMetricsMap of(std::vector<Entry> entries);

  /// The counters of `name`, or null. Valid until the map is assigned to or destroyed.
  [[nodiscard]] const ConnectionMetrics* find(std::string_view name) const;

  [[nodiscard]] std::size_t size() const { return values_.size(); }
  [[nodiscard]] bool empty() const { return values_.empty(); }
  /// The table of names, for a further map of the same interfaces.
  [[nodiscard]] const std::shared_ptr<const Names>& names() const { return names_; }
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
