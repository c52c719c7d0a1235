#include "NetworkMonitor/Interfaces/InterfaceConversion.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lanternfold {
namespace {

std::vector<IPv4ConnectionDetails> ipv4Details(const std::vector<NetInterface::Address>& list) {
  std::vector<IPv4ConnectionDetails> details;
  for (const NetInterface::Address& address : list) {
    if (!address.netmask || !address.gateway || !address.cidr) continue;
    details.push_back({.address = address.ip,
                       .netmask = *address.netmask,
                       .gateway = *address.gateway,
                       .cidr = *address.cidr});
  }
  return details;
}

std::vector<IPv6ConnectionDetails> ipv6Details(const std::vector<NetInterface::Address>& list) {
  std::vector<IPv6ConnectionDetails> details;
  for (const NetInterface::Address& address : list) {
    if (!address.prefix || !address.gateway || !address.cidr) continue;
    details.push_back({.address = address.ip,
                       .prefix = *address.prefix,
                       .gateway = *address.gateway,
                       .cidr = *address.cidr});
  }
  return details;
}

}  // namespace

BasicInterface basicInterface(const NetInterface& interface, const ConnectionMetrics& counters,
                              AdapterDescription adapter) {
  auto ipv4 = ipv4Details(interface.ipv4);
  auto ipv6 = ipv6Details(interface.ipv6);
  const bool supportsIPv4 = !ipv4.empty();
  const bool supportsIPv6 = !ipv6.empty();
  return {.active = interface.isActive,
          .displayName = std::move(adapter.displayName),
          .metrics = counters,
          .name = interface.name,
          .type = adapter.type,
          .supportsIPv4 = supportsIPv4,
          .IPv4 = std::move(ipv4),
          .supportsIPv6 = supportsIPv6,
          .IPv6 = std::move(ipv6),
          .hwAddress = interface.metrics ? interface.metrics->hwAddress : std::nullopt};
}

}  // namespace lanternfold
