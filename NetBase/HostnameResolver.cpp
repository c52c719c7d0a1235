#include "NetBase/HostnameResolver.h"

#include "NetBase/AddressText.h"

namespace lanternfold {

std::expected<ResolvedHost, HostnameResolverError> BsdHostnameResolver::resolve(
    std::string_view host, std::optional<IPVersion> ipVersion) const {
  if (ipVersion != IPVersion::ipv6) {
    if (const auto address = lookup_.ipv4Address(host)) {
      return ResolvedHost{ipv4Text(*address), IPVersion::ipv4};
    }
  }
  if (ipVersion != IPVersion::ipv4) {
    if (const auto address = lookup_.ipv6Address(host)) {
      return ResolvedHost{ipv6Text(*address), IPVersion::ipv6};
    }
  }
  return std::unexpected(HostnameResolverError::resolutionFailed);
}

}  // namespace lanternfold
