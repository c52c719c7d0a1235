// The seam to the system's translation of host names into addresses: whatever the system is
// configured to ask (a file of hosts, DNS).
//
// Linux side: `LinuxHostLookup`. Fake: `FakeHostLookup`. Both pass the same contract tests.
#pragma once

#include <optional>
#include <string_view>

#include "Platform/SocketAddress.h"

namespace lanternfold {

/// Any thread. A call blocks for as long as the system asks around, which is some seconds when no
/// server answers, and asks afresh each time. What is no name of a host has no address.
class HostLookup {
 public:
  virtual ~HostLookup() = default;

  /// The first address of that family in the system's order; none when the host has none, is not
  /// known, or nobody could be asked. An address written out stands for itself.
  [[nodiscard]] virtual std::optional<IPv4Bytes> ipv4Address(std::string_view host) const = 0;
  [[nodiscard]] virtual std::optional<IPv6Bytes> ipv6Address(std::string_view host) const = 0;
};

}  // namespace lanternfold
