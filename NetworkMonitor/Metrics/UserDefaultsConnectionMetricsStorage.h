// Counters remembered in the user's defaults, where the programs of one application group share
// them.
//
// Made by: the composition. Read by: the recorder. Nothing is kept here: every operation goes to
// the suite, so that what another program registered is seen at once.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "NetworkMonitor/Metrics/ConnectionMetricsData.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsStorage.h"
#include "Platform/Clock.h"
#include "Platform/DiagnosticLog.h"
#include "Platform/UserDefaults.h"

namespace lanternfold {

/// Under `dataKey` stands a dictionary from the type's raw value, a slash and the interface name
/// ("0/en0") to the JSON of one record as data; under `lastRegisterDateKey` a date. Any other entry
/// is passed over and gone with the next registration; with a value that is no data, all of them.
///
/// A suite that cannot be read is not overwritten: a look that failed answers none, and from then
/// on nothing is registered until `save` has reported it. A record may have been computed from that
/// look, and the map would be one without all that was not read. Counters are totals, so the next
/// sample makes up for the one that is left out. A reset, which asks for an empty map, ends this
/// too.
class UserDefaultsConnectionMetricsStorage final : public ConnectionMetricsPersistentStorage {
 public:
  static constexpr std::string_view lastRegisterDateKey =
      "UserDefaultsConnectionMetricsStorage__lastRegisterDate";
  static constexpr std::string_view dataKey = "UserDefaultsConnectionMetricsStorage__data";

  /// All outlive the storage.
  struct Environment {
    const Clock& clock;
    DiagnosticLog& log;
  };

  /// `userDefaults` is not null.
  UserDefaultsConnectionMetricsStorage(Environment environment,
                                       std::shared_ptr<UserDefaults> userDefaults);

  [[nodiscard]] std::optional<Date> lastRegisterDate() const override;
  /// A record under a name that is not UTF-8 cannot be encoded: it is reported and left out.
  void registerMetrics(const ConnectionMetrics& metrics, std::string_view interfaceName,
                       ConnectionMetricsType type) override;
  [[nodiscard]] std::optional<ConnectionMetrics> metrics(std::string_view interfaceName,
                                                         ConnectionMetricsType type) override;
  /// Reads the dictionary once.
  [[nodiscard]] Remembered remembered(std::string_view interfaceName) override;
  [[nodiscard]] ConnectionMetricsMap allMetrics(ConnectionMetricsType type) override;
  void reset() override;
  /// Brings the suite to the disk. An error also when a look failed since the last call: what was
  /// registered after it is not kept.
  [[nodiscard]] std::expected<void, MetricsSaveError> save() override;

 private:
  /// None, and noted for `save`, when the suite cannot be read.
  [[nodiscard]] std::optional<PropertyListValue> look(std::string_view key) const;
  void write(const ConnectionMetricsData& data);

  Environment environment_;
  std::shared_ptr<UserDefaults> userDefaults_;
  mutable std::optional<UserDefaultsError> failedLook_;  ///< the first one since the last `save`
};

}  // namespace lanternfold
