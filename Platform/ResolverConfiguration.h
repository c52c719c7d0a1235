// The seam to the system resolver's list of DNS servers.
//
// Linux side: `LinuxResolverConfiguration` (res_ninit). Fake: `FakeResolverConfiguration`.
#pragma once

#include <optional>
#include <vector>

#include "Platform/SocketAddress.h"

namespace lanternfold {

class ResolverConfiguration {
 public:
  virtual ~ResolverConfiguration() = default;

  /// The servers in resolver order, read afresh by each call; none when the resolver's state could
  /// not be initialised, empty when no server is configured. Any thread; blocks for a file read.
  [[nodiscard]] virtual std::optional<std::vector<SocketAddress>> dnsServers() const = 0;
};

}  // namespace lanternfold
