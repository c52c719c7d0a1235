#include "NetworkMonitor/Interfaces/PosixInterfaceResolver.h"

#include <algorithm>
#include <utility>

#include "NetworkMonitor/Interfaces/InterfaceConversion.h"
#include "Support/FatalError.h"

namespace lanternfold {

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
  return basicInterface(interface, *counters, adapters.describe(interface.name));
}

std::optional<ConnectionMetrics> PosixInterfaceResolver::countersOf(const std::string& name) const {
  const auto counters = metricsReader_->read();
  if (!counters) return std::nullopt;
  const ConnectionMetrics* known = counters->find(name);
  return known == nullptr ? std::nullopt : std::optional(*known);
}

}  // namespace lanternfold
