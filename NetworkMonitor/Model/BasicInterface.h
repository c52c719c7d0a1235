// The record of one network interface.
//
// Made by: the interface resolver. Read by: the monitor, the widget views, the command line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "NetworkMonitor/Model/NetworkSource.h"

namespace lanternfold {

struct IPv4ConnectionDetails {
  std::string address;  ///< dotted
  std::string netmask;  ///< dotted mask
  std::string gateway;  ///< dotted; empty when none is known
  /// The address block: dotted address, a slash and the prefix length.
  std::string cidr;

  friend bool operator==(const IPv4ConnectionDetails&, const IPv4ConnectionDetails&) = default;
};

struct IPv6ConnectionDetails {
  std::string address;
  std::int64_t prefix = 0;  ///< length in bits
  std::string gateway;
  std::string cidr;

  friend bool operator==(const IPv6ConnectionDetails&, const IPv6ConnectionDetails&) = default;
};

struct BasicInterface {
  bool active = false;
  std::string displayName;  ///< the adapter's human name
  ConnectionMetrics metrics;
  std::string name;  ///< the kernel's name, such as "en0"
  InterfaceType type = InterfaceType::unknown;
  bool supportsIPv4 = false;
  std::vector<IPv4ConnectionDetails> IPv4;
  bool supportsIPv6 = false;
  std::vector<IPv6ConnectionDetails> IPv6;
  /// Upper-case colon-separated hex pairs; absent when the interface has none or it is withheld.
  std::optional<std::string> hwAddress;

  [[nodiscard]] static constexpr NetworkSourceCategory category() {
    return NetworkSourceCategory::other();
  }
  [[nodiscard]] SourceList listRepresentation(const StringTable& strings) const;
  [[nodiscard]] SourceList compressedListRepresentation(const StringTable& strings) const;

  friend bool operator==(const BasicInterface&, const BasicInterface&) = default;
};

[[nodiscard]] inline const ConnectionMetrics& metricsOf(const BasicInterface& interface) {
  return interface.metrics;
}

/// The requirements of an interface, over and above those of a source.
template <typename Record>
concept Interface = NetworkSource<Record> && requires(const Record& record) {
  { record.name } -> std::convertible_to<std::string>;
  { record.type } -> std::convertible_to<InterfaceType>;
  { record.supportsIPv4 } -> std::convertible_to<bool>;
  { record.IPv4 } -> std::convertible_to<std::vector<IPv4ConnectionDetails>>;
  { record.supportsIPv6 } -> std::convertible_to<bool>;
  { record.IPv6 } -> std::convertible_to<std::vector<IPv6ConnectionDetails>>;
  { record.hwAddress } -> std::convertible_to<std::optional<std::string>>;
};

static_assert(Interface<BasicInterface>);
static_assert(IPConnectionDetails<IPv4ConnectionDetails>);
static_assert(IPConnectionDetails<IPv6ConnectionDetails>);

}  // namespace lanternfold
