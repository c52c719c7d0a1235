#include "NetBase/DefaultGateways.h"

#include <utility>

#include "NetBase/AddressText.h"

namespace lanternfold {
namespace {

/// The IPv4 address in `address`, or null.
const IPv4Bytes* ipv4In(const std::optional<SocketAddress>& address) {
  return address ? std::get_if<IPv4Bytes>(&*address) : nullptr;
}

}  // namespace

std::optional<InterfaceNameMap<std::string>> defaultGateways(NetworkKernelReading& reading) {
  const auto& routes = reading.routes(RouteFamily::ipv4);
  if (!routes) return std::nullopt;
  InterfaceNameMap<std::string> gateways;
  for (const RouteRecord& route : *routes) {
    const IPv4Bytes* destination = ipv4In(route.destination);
    const IPv4Bytes* gateway = ipv4In(route.gateway);
    if (destination == nullptr || gateway == nullptr || *destination != IPv4Bytes{}) continue;
    auto name = reading.interfaceName(route.interfaceIndex);
    if (name) gateways.insert_or_assign(*std::move(name), ipv4Text(*gateway));
  }
  return gateways;
}

}  // namespace lanternfold
