#include "NetworkMonitor/Interfaces/PosixInterfaceResolver.h"

#include <algorithm>
#include <utility>

#include "Support/FatalError.h"

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

PosixInterfaceResolver::PosixInterfaceResolver(
    std::shared_ptr<ConnectionMetricsReader> metricsReader, const NetUtils& netUtils,
    const NetworkConfiguration& configuration, const StringTable& strings)
    : metricsReader_(std::move(metricsReader)),
      netUtils_(netUtils),
      configuration_(configuration),
      strings_(strings) {
  if (!metricsReader_) fatalError("an interface resolver was made without a counter reader");
}

std::vector<BasicInterface> PosixInterfaceResolver::interfaces() {
  return convertAll(netUtils_.interfaces(std::nullopt, std::nullopt));
}

std::vector<BasicInterface> PosixInterfaceResolver::interfacesExcluding(
    const std::vector<std::string>& names) {
  return convertAll(netUtils_.interfaces(std::nullopt, names));
}

std::vector<BasicInterface> PosixInterfaceResolver::interfacesPrefixed(std::string_view prefix) {
  return convertAll(netUtils_.interfaces(prefix, std::nullopt));
}

std::optional<BasicInterface> PosixInterfaceResolver::interfaceNamed(std::string_view name) {
  const auto candidates = netUtils_.interfaces(name, std::nullopt);
  const auto candidate = candidates.find(name);
  if (candidate == candidates.end()) return std::nullopt;
  return convert(candidate->second, AdapterCatalogue(configuration_, strings_));
}

std::vector<BasicInterface> PosixInterfaceResolver::convertAll(
    const InterfaceNameMap<NetInterface>& interfaces) const {
  std::vector<const NetInterface*> ordered;
  ordered.reserve(interfaces.size());
  for (const auto& [name, interface] : interfaces) ordered.push_back(&interface);
  std::ranges::sort(ordered, {}, &NetInterface::name);

  const AdapterCatalogue adapters(configuration_, strings_);
  std::vector<BasicInterface> results;
  results.reserve(ordered.size());
  for (const NetInterface* interface : ordered) {
    auto result = convert(*interface, adapters);
    if (result) results.push_back(*std::move(result));
  }
  return results;
}

std::optional<BasicInterface> PosixInterfaceResolver::convert(
    const NetInterface& interface, const AdapterCatalogue& adapters) const {
  if (!interface.metrics) return std::nullopt;
  const auto counters = countersOf(interface.name);
  if (!counters) return std::nullopt;
  auto ipv4 = ipv4Details(interface.ipv4);
  auto ipv6 = ipv6Details(interface.ipv6);
  auto adapter = adapters.describe(interface.name);
  const bool supportsIPv4 = !ipv4.empty();
  const bool supportsIPv6 = !ipv6.empty();
  return BasicInterface{.active = interface.isActive,
                        .displayName = std::move(adapter.displayName),
                        .metrics = *counters,
                        .name = interface.name,
                        .type = adapter.type,
                        .supportsIPv4 = supportsIPv4,
                        .IPv4 = std::move(ipv4),
                        .supportsIPv6 = supportsIPv6,
                        .IPv6 = std::move(ipv6),
                        .hwAddress = interface.metrics->hwAddress};
}

std::optional<ConnectionMetrics> PosixInterfaceResolver::countersOf(const std::string& name) const {
  const auto counters = metricsReader_->read();
  if (!counters) return std::nullopt;
  const ConnectionMetrics* known = counters->find(name);
  return known == nullptr ? std::nullopt : std::optional(*known);
}

}  // namespace lanternfold
