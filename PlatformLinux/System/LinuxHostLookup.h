// The C library's `gethostbyname2`, as a re-entrant call: the file of hosts, DNS and whatever else
// nsswitch.conf names.
//
// Made by: the composition.
#pragma once

#include "Platform/HostLookup.h"

namespace lanternfold {

/// Letters outside ASCII are looked up as DNS carries them. Addresses are never looked up in
/// reverse. Stateless; any thread.
class LinuxHostLookup final : public HostLookup {
 public:
  [[nodiscard]] std::optional<IPv4Bytes> ipv4Address(std::string_view host) const override;
  [[nodiscard]] std::optional<IPv6Bytes> ipv6Address(std::string_view host) const override;
};

}  // namespace lanternfold
