// The DNS servers of the C library's resolver.
//
// Made by: the composition. Read by: `SNUtils`.
#pragma once

#include "Platform/ResolverConfiguration.h"

namespace lanternfold {

/// Stateless; every question initialises a resolver state of its own, so that any thread may ask
/// and a changed /etc/resolv.conf is seen. The C library keeps the first three servers.
///
/// Without any "nameserver" line the C library asks 127.0.0.1; that is its guess and nobody's
/// configuration, so the answer is empty then.
class LinuxResolverConfiguration final : public ResolverConfiguration {
 public:
  [[nodiscard]] std::optional<std::vector<SocketAddress>> dnsServers() const override;
};

}  // namespace lanternfold
