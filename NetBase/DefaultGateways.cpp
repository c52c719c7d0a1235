#include "NetBase/DefaultGateways.h"

#include <utility>

#include "NetBase/AddressText.h"

namespace lanternfold {
namespace {

/// The address of the family `Bytes` in `address`, or null.
template <typename Bytes>
const Bytes* addressIn(const std::optional<SocketAddress>& address) {
  return address ? std::get_if<Bytes>(&*address) : nullptr;
}

}  // namespace

std::optional<InterfaceNameMap<std::string>> defaultGateways(NetworkKernelReading& reading) {
  const auto& routes = reading.routes(RouteFamily::ipv4);
  if (!routes) return std::nullopt;
  InterfaceNameMap<std::string> gateways;
  for (const RouteRecord& route : *routes) {
    const IPv4Bytes* destination = addressIn<IPv4Bytes>(route.destination);
    const IPv4Bytes* gateway = addressIn<IPv4Bytes>(route.gateway);
    if (destination == nullptr || gateway == nullptr || *destination != IPv4Bytes{}) continue;
    auto name = reading.interfaceName(route.interfaceIndex);
    if (name) gateways.insert_or_assign(*std::move(name), ipv4Text(*gateway));
  }
  return gateways;
}

std::optional<IPv6Bytes> firstIPv6DefaultGateway(NetworkKernelReading& reading,
                                                 std::string_view name) {
  const auto& routes = reading.routes(RouteFamily::ipv6);
  if (!routes) return std::nullopt;
  for (const RouteRecord& route : *routes) {
    const auto* destination = addressIn<IPv6Bytes>(route.destination);
    const auto* gateway = addressIn<IPv6Bytes>(route.gateway);
    if (destination == nullptr || gateway == nullptr || destination->front() != 0) continue;
    if (reading.interfaceName(route.interfaceIndex) == name) return *gateway;
  }
  return std::nullopt;
}

}  // namespace lanternfold
