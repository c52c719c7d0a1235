// The machine's Wi-Fi with all its radio figures, from the system's Wi-Fi client.
//
// Made by: the composition; it is the one that the monitor uses. Read by: the monitor.
#pragma once

#include <expected>
#include <memory>
#include <optional>

#include "NetworkMonitor/Monitor/Resolvers.h"
#include "Platform/StringTable.h"
#include "Platform/WifiClient.h"

namespace lanternfold {

/// Keeps no state between calls; any thread that the interface resolver allows. Never fails:
/// without the user's consent the client withholds the network's name, and there is no current
/// network then.
class CoreWlanInterfaceResolver final : public WlanInterfaceResolver {
 public:
  /// What the resolver needs of the system. All outlive it.
  struct Environment {
    const WifiClient& wifiClient;
    const StringTable& strings;
  };

  /// `interfaceResolver` may not be null.
  CoreWlanInterfaceResolver(std::shared_ptr<InterfaceResolver> interfaceResolver,
                            const Environment& environment);

  /// None on a machine without Wi-Fi, for an interface without a name and for one that the
  /// interface resolver does not know. `active` says whether the radio is on.
  [[nodiscard]] std::expected<std::optional<WlanInterface>, WlanInterfaceResolverError>
  wlanInterface() override;

 private:
  [[nodiscard]] std::optional<WlanNetwork> currentNetwork(const WifiInterface& wifi) const;
  [[nodiscard]] WlanMetrics radioFigures(const WifiInterface& wifi) const;

  const std::shared_ptr<InterfaceResolver> interfaceResolver_;
  const Environment environment_;
};

}  // namespace lanternfold
