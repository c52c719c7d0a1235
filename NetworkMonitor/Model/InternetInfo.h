// The public side of the connection.
//
// Made by: the internet resolver. Read by: the monitor, the widget views, the command line.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "NetworkMonitor/Model/BasicInterface.h"

namespace lanternfold {

struct InternetInfo {
  bool active = false;
  std::string displayName;
  std::optional<std::string> ip;       ///< public IPv4 address
  std::optional<bool> supportsIPv6;    ///< absent: not yet known
  std::optional<std::string> ipv6;     ///< public IPv6 address
  std::optional<std::string> isp;      ///< provider's name
  std::optional<std::string> country;  ///< two-letter code
  /// The interface that carries the default route.
  std::optional<BasicInterface> interface;
  std::vector<std::string> dns;  ///< server addresses in resolver order
  ConnectionMetrics metrics;

  [[nodiscard]] static constexpr NetworkSourceCategory category() {
    return NetworkSourceCategory::internet();
  }
  [[nodiscard]] SourceList listRepresentation(const StringTable& strings) const;
  /// Stops the program when `supportsIPv6` is true and `ipv6` is absent.
  [[nodiscard]] SourceList compressedListRepresentation(const StringTable& strings) const;

  friend bool operator==(const InternetInfo&, const InternetInfo&) = default;
};

[[nodiscard]] inline const ConnectionMetrics& metricsOf(const InternetInfo& info) {
  return info.metrics;
}

static_assert(NetworkSource<InternetInfo>);

}  // namespace lanternfold
