#include "NetBase/SNUtils.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <span>
#include <variant>

#include "NetBase/AddressText.h"
#include "NetBase/DefaultGateways.h"
#include "NetBase/InterfaceWalk.h"
#include "NetBase/LinkMetrics.h"

namespace lanternfold {
namespace {

int leadingOnes(std::span<const std::uint8_t> mask) {
  int length = 0;
  for (const std::uint8_t byte : mask) {
    if (byte == 0xFF) {
      length += 8;
      continue;
    }
    return byte == 0 ? length : length + 8 - std::countr_zero(byte);
  }
  return length;
}

/// The family's text, or none for a family that is not an internet one.
std::optional<std::string> inetText(const SocketAddress& address) {
  if (const auto* ipv4 = std::get_if<IPv4Bytes>(&address)) return ipv4Text(*ipv4);
  if (const auto* ipv6 = std::get_if<IPv6Bytes>(&address)) return ipv6Text(*ipv6);
  return std::nullopt;
}

}  // namespace

SNUtils::SNUtils(const NetworkKernel& kernel, const ResolverConfiguration& resolver,
                 const InterfaceNaming& naming, DiagnosticLog& log)
    : kernel_(&kernel), resolver_(&resolver), naming_(&naming), log_(&log) {}

InterfaceNameMap<PropertyListDictionary> SNUtils::inetInterfacesWithPrefix(
    std::optional<std::string_view> prefix,
    const std::optional<std::vector<std::string>>& excluding) const {
  std::function<bool(std::string_view)> belongs;
  if (prefix) belongs = naming_->matcher(*prefix);
  std::vector<std::string_view> excluded;
  if (excluding) excluded.assign(excluding->begin(), excluding->end());
  std::ranges::sort(excluded);

  const auto reading = kernel_->beginReading();
  InterfaceWalk walk(*reading, [&belongs, &excluded](std::string_view name) {
    return (!belongs || belongs(name)) && !std::ranges::binary_search(excluded, name);
  });
  return walk.run();
}

InterfaceNameMap<PropertyListDictionary> SNUtils::linkInterfacesMetrics() const {
  const auto reading = kernel_->beginReading();
  const auto& links = reading->linkRecords();
  InterfaceNameMap<PropertyListDictionary> metrics;
  if (!links) return metrics;
  metrics.reserve(links->size());
  for (const LinkRecord& link : *links) {
    metrics.insert_or_assign(link.name, linkMetricsDictionary(link));
  }
  return metrics;
}

std::optional<std::string> SNUtils::gatewayForAddress(const IPv4Bytes& /*address*/,
                                                      const IPv4Bytes& /*netmask*/,
                                                      std::string_view ifname) const {
  const auto reading = kernel_->beginReading();
  const auto gateways = defaultGateways(*reading);
  if (!gateways) return std::nullopt;
  const auto gateway = gateways->find(ifname);
  return gateway == gateways->end() ? std::string(noGatewayText) : gateway->second;
}

std::optional<std::string> SNUtils::gatewayForAddress6(const IPv6Bytes& /*address*/,
                                                       const IPv6Bytes& /*netmask*/,
                                                       std::string_view ifname) const {
  const auto reading = kernel_->beginReading();
  const std::optional<IPv6Bytes> found = firstIPv6DefaultGateway(*reading, ifname);
  static_cast<void>(found);  // deliberately never reported: callers take its absence as normal
  return std::nullopt;
}

std::uint8_t SNUtils::ipv4masklen(const IPv4Bytes& netmask) {
  return static_cast<std::uint8_t>(leadingOnes(netmask));
}

std::int32_t SNUtils::ipv6masklen(const IPv6Bytes& netmask) { return leadingOnes(netmask); }

std::vector<std::string> SNUtils::listDNSServers() const {
  std::vector<std::string> texts;
  const auto servers = resolver_->dnsServers();
  if (!servers) return texts;
  for (const SocketAddress& server : *servers) {
    auto text = inetText(server);
    if (text) {
      texts.push_back(*std::move(text));
    } else {
      log_->line("Undefined family.");
    }
  }
  return texts;
}

}  // namespace lanternfold
