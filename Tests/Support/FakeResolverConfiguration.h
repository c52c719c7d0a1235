// A resolver configuration that holds the servers a test gives it.
#pragma once

#include <optional>
#include <utility>
#include <vector>

#include "Platform/ResolverConfiguration.h"

namespace lanternfold {

class FakeResolverConfiguration final : public ResolverConfiguration {
 public:
  /// None: the resolver cannot be initialised.
  void setServers(std::optional<std::vector<SocketAddress>> servers) {
    servers_ = std::move(servers);
  }

  [[nodiscard]] std::optional<std::vector<SocketAddress>> dnsServers() const override {
    return servers_;
  }

 private:
  std::optional<std::vector<SocketAddress>> servers_ = std::vector<SocketAddress>{};
};

}  // namespace lanternfold
