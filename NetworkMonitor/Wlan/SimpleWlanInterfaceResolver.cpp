#include "NetworkMonitor/Wlan/SimpleWlanInterfaceResolver.h"

#include <utility>

#include "NetworkMonitor/Location/LocationAuthorizationObserver.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

using Kind = WlanInterfaceResolverError::Kind;

/// What a status lacks; none when nothing keeps the record back.
std::optional<Kind> shortfall(LocationAuthorizationObserver::AuthorizationStatus status) {
  using enum LocationAuthorizationObserver::AuthorizationStatus;
  switch (status) {
    case notDetermined:
      return Kind::authorizationMissing;
    case restricted:
    case denied:
      return Kind::authorizationDenied;
    case authorizedAlways:
    case authorizedWhenInUse:
    case unknown:
      break;
  }
  return std::nullopt;
}

}  // namespace

SimpleWlanInterfaceResolver::SimpleWlanInterfaceResolver(
    std::shared_ptr<WlanInterfaceNameFinder> wlanInterfaceNameFinder,
    std::shared_ptr<InterfaceResolver> interfaceResolver,
    std::shared_ptr<WlanHwAddressResolver> wlanMacResolver, const LocationConsent& consent)
    : wlanInterfaceNameFinder_(std::move(wlanInterfaceNameFinder)),
      interfaceResolver_(std::move(interfaceResolver)),
      wlanMacResolver_(std::move(wlanMacResolver)),
      consent_(consent) {
  if (!wlanInterfaceNameFinder_ || !interfaceResolver_ || !wlanMacResolver_) {
    fatalError("a Wi-Fi resolver was made without its name finder or one of its resolvers");
  }
}

std::expected<std::optional<WlanInterface>, WlanInterfaceResolverError>
SimpleWlanInterfaceResolver::wlanInterface() {
  auto wlan = record();
  if (!wlan) return std::nullopt;
  const auto lacking = shortfall(LocationAuthorizationObserver::currentAuthStatus(consent_));
  if (lacking) {
    return std::unexpected(WlanInterfaceResolverError{.kind = *lacking, .wlan = *std::move(wlan)});
  }
  return wlan;
}

std::optional<WlanInterface> SimpleWlanInterfaceResolver::record() const {
  const auto name = wlanInterfaceNameFinder_->wlanInterfaceName();
  if (!name) return std::nullopt;
  auto interface = interfaceResolver_->interfaceNamed(*name);
  if (!interface) return std::nullopt;
  if (!interface->hwAddress) interface->hwAddress = wlanMacResolver_->getWlanHwAddress();
  return WlanInterface{.active = interface->active,
                       .displayName = interface->displayName,
                       .mode = std::nullopt,
                       .interface = *interface,
                       .currentNetwork = std::nullopt};
}

}  // namespace lanternfold
