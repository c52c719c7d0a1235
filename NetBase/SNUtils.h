// The machine's interfaces, addresses, gateways, counters and DNS servers as loosely typed
// dictionaries: the lowest layer above the kernel's records.
//
// Made by: the composition. Read by: `NetUtils`, which makes typed records of the dictionaries.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "NetBase/InterfaceNameMap.h"
#include "Platform/DiagnosticLog.h"
#include "Platform/InterfaceNaming.h"
#include "Platform/NetworkKernel.h"
#include "Platform/ResolverConfiguration.h"
#include "Support/PropertyListValue.h"

namespace lanternfold {

/// Holds only references to what it asks, which all outlive it; copies are free. Every operation is
/// synchronous, takes a new look at the system and may be called on any thread. Nothing fails: what
/// cannot be read is empty or none.
class SNUtils {
 public:
  SNUtils(const NetworkKernel& kernel, const ResolverConfiguration& resolver,
          const InterfaceNaming& naming, DiagnosticLog& log);

  /// An interface dictionary (`SNUtilsInetInterfacesKey`) for every name that belongs to `prefix`
  /// (every name when there is none) and is not among `excluding`, compared exactly.
  [[nodiscard]] InterfaceNameMap<PropertyListDictionary> inetInterfacesWithPrefix(
      std::optional<std::string_view> prefix,
      const std::optional<std::vector<std::string>>& excluding) const;

  /// A metrics dictionary (`SNUtilsInterfaceInfoKey`) for every link; of two links of one name the
  /// later in the kernel's list.
  [[nodiscard]] InterfaceNameMap<PropertyListDictionary> linkInterfacesMetrics() const;

  /// The dotted default gateway of the interface: that of its last default route, "0.0.0.0" when no
  /// route matches, none when the routing table cannot be read. Only the name is used.
  [[nodiscard]] std::optional<std::string> gatewayForAddress(const IPv4Bytes& address,
                                                             const IPv4Bytes& netmask,
                                                             std::string_view ifname) const;

  /// Looks the interface's IPv6 gateway up (`firstIPv6DefaultGateway`) and answers none whatever it
  /// finds: an IPv6 gateway is deliberately never reported, and its absence is normal. A walk over
  /// the interfaces does not ask, since it would read a routing table for every address in vain.
  [[nodiscard]] std::optional<std::string> gatewayForAddress6(const IPv6Bytes& address,
                                                              const IPv6Bytes& netmask,
                                                              std::string_view ifname) const;

  /// The length, 0 to 32, of the mask's leading run of ones, told byte by byte: only the first byte
  /// that is not 0xFF counts, and in it only the trailing zeros. 255.0.255.0 has 8.
  [[nodiscard]] static std::uint8_t ipv4masklen(const IPv4Bytes& netmask);
  /// The same of an IPv6 mask, 0 to 128.
  [[nodiscard]] static std::int32_t ipv6masklen(const IPv6Bytes& netmask);

  /// The resolver's servers as text, in its order. A server of a family that is neither IPv4 nor
  /// IPv6 is left out with a line in the log.
  [[nodiscard]] std::vector<std::string> listDNSServers() const;

 private:
  const NetworkKernel* kernel_;
  const ResolverConfiguration* resolver_;
  const InterfaceNaming* naming_;
  DiagnosticLog* log_;
};

}  // namespace lanternfold
