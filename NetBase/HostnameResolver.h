// From a host's name to one of its addresses.
#pragma once

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include "NetBase/IPVersion.h"
#include "Platform/HostLookup.h"

namespace lanternfold {

enum class HostnameResolverError : std::uint8_t { resolutionFailed };

struct ResolvedHost {
  std::string ip;  ///< the address as text
  IPVersion v = IPVersion::ipv4;
  friend bool operator==(const ResolvedHost&, const ResolvedHost&) = default;
};

class HostnameResolver {
 public:
  virtual ~HostnameResolver() = default;

  /// An address of that version; without one, of either. Blocks for the look-up.
  [[nodiscard]] virtual std::expected<ResolvedHost, HostnameResolverError> resolve(
      std::string_view host, std::optional<IPVersion> ipVersion) const = 0;

  /// The same of either version.
  [[nodiscard]] std::expected<ResolvedHost, HostnameResolverError> resolve(
      std::string_view host) const {
    return resolve(host, std::nullopt);
  }
};

/// Asks the system's resolver, for IPv4 first where both will do. Stateless; any thread.
class BsdHostnameResolver final : public HostnameResolver {
 public:
  /// `lookup` outlives the resolver.
  explicit BsdHostnameResolver(const HostLookup& lookup) : lookup_(lookup) {}

  using HostnameResolver::resolve;
  [[nodiscard]] std::expected<ResolvedHost, HostnameResolverError> resolve(
      std::string_view host, std::optional<IPVersion> ipVersion) const override;

 private:
  const HostLookup& lookup_;
};

}  // namespace lanternfold
