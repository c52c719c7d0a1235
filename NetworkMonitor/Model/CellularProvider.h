// The records of the cellular side: carriers and the provider that holds them.
//
// Made by: a cellular resolver (none exists here yet). Read by: the monitor, the widget views.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "NetworkMonitor/Model/BasicInterface.h"

namespace lanternfold {

/// One SIM's carrier.
struct CarrierInfo {
  std::string name;
  std::string radioAccessTechnology;
  bool allowsVOIP = false;
  std::optional<std::string> countryCode;
  std::optional<std::string> mcc;  ///< mobile country code
  std::optional<std::string> mnc;  ///< mobile network code

  friend bool operator==(const CarrierInfo&, const CarrierInfo&) = default;
};

struct CellularProvider {
  bool active = false;
  std::string displayName;
  std::vector<CarrierInfo> carriers;
  /// Index into `carriers` of the one that carries data.
  std::optional<std::int64_t> dataCarrierIndex;
  std::vector<BasicInterface> interfaces;  ///< the cellular data interfaces
  ConnectionMetrics metrics;
  /// The personal-hotspot interface, when one is up.
  std::optional<BasicInterface> hotspotInterface;
  std::optional<ConnectionMetrics> hotspotMetrics;

  [[nodiscard]] static constexpr NetworkSourceCategory category() {
    return NetworkSourceCategory::cellular();
  }
  [[nodiscard]] SourceList listRepresentation(const StringTable& strings) const;
  /// Stops the program when the hotspot's bytes exceed 2^64 - 1 in sum.
  [[nodiscard]] SourceList compressedListRepresentation(const StringTable& strings) const;

  friend bool operator==(const CellularProvider&, const CellularProvider&) = default;
};

[[nodiscard]] inline const ConnectionMetrics& metricsOf(const CellularProvider& provider) {
  return provider.metrics;
}

static_assert(NetworkSource<CellularProvider>);

}  // namespace lanternfold
