// The machine's Wi-Fi interface without its radio, guarded by the user's consent.
//
// Made by: a composition on a system without a Wi-Fi client. Read by: the monitor.
#pragma once

#include <expected>
#include <memory>
#include <optional>

#include "NetworkMonitor/Monitor/Resolvers.h"
#include "NetworkMonitor/Wlan/WlanHwAddressResolver.h"
#include "NetworkMonitor/Wlan/WlanInterfaceNameFinder.h"
#include "Platform/LocationManager.h"

namespace lanternfold {

/// Keeps no state between calls; blocks as long as the name finder does.
class SimpleWlanInterfaceResolver final : public WlanInterfaceResolver {
 public:
  /// No pointer may be null; `consent` outlives the resolver.
  SimpleWlanInterfaceResolver(std::shared_ptr<WlanInterfaceNameFinder> wlanInterfaceNameFinder,
                              std::shared_ptr<InterfaceResolver> interfaceResolver,
                              std::shared_ptr<WlanHwAddressResolver> wlanMacResolver,
                              const LocationConsent& consent);

  /// None when no name is found or the interface resolver does not know it, whatever the consent.
  /// An error when the consent is known to be lacking; a status that is not known is none of that.
  [[nodiscard]] std::expected<std::optional<WlanInterface>, WlanInterfaceResolverError>
  wlanInterface() override;

 private:
  [[nodiscard]] std::optional<WlanInterface> record() const;

  const std::shared_ptr<WlanInterfaceNameFinder> wlanInterfaceNameFinder_;
  const std::shared_ptr<InterfaceResolver> interfaceResolver_;
  const std::shared_ptr<WlanHwAddressResolver> wlanMacResolver_;
  const LocationConsent& consent_;
};

}  // namespace lanternfold
