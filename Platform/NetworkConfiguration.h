// The seam to the system's list of network adapters, with their kinds and human names.
//
// Linux side: `LinuxNetworkConfiguration` (link kind, device, hardware database).
// Fake: `FakeNetworkConfiguration`.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/NetworkPath.h"

namespace lanternfold {

enum class ConfiguredInterfaceType {
  ieee80211,
  ethernet,
  bluetooth,
  other,  ///< an adapter of another kind (a bond, a modem)
};

/// One adapter that the system knows as such; tunnels, bridges and the like are not listed.
struct ConfiguredInterface {
  std::string bsdName;
  /// Absent when the system does not tell.
  std::optional<ConfiguredInterfaceType> type;
  /// The adapter's human name, plain text; absent when the system knows none.
  std::optional<std::string> localizedDisplayName;
  friend bool operator==(const ConfiguredInterface&, const ConfiguredInterface&) = default;
};

/// Any thread; blocks for a few system calls, never for the network. Nothing is reported as an
/// error: a list that cannot be read is empty.
class NetworkConfiguration {
 public:
  virtual ~NetworkConfiguration() = default;

  /// Every adapter, in a stable order.
  [[nodiscard]] virtual std::vector<ConfiguredInterface> allInterfaces() const = 0;

  /// The type of the interface that a scoped IPv4 address names: `scopedAddress` is a dotted
  /// address, "%" and an interface name ("127.0.0.1%eth0"). None when the text does not parse or no
  /// such interface exists.
  [[nodiscard]] virtual std::optional<PathInterfaceType> scopedInterfaceType(
      std::string_view scopedAddress) const = 0;
};

}  // namespace lanternfold
