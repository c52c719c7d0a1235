// Hosts in memory.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/HostLookup.h"

namespace lanternfold {

/// Single thread.
class FakeHostLookup final : public HostLookup {
 public:
  void addAddress(std::string host, IPv4Bytes address) {
    ipv4_[std::move(host)].push_back(address);
  }
  void addAddress(std::string host, IPv6Bytes address) {
    ipv6_[std::move(host)].push_back(address);
  }

  /// What was asked for, in order, as "ipv4 name".
  [[nodiscard]] const std::vector<std::string>& questions() const { return questions_; }

  [[nodiscard]] std::optional<IPv4Bytes> ipv4Address(std::string_view host) const override {
    return first(ipv4_, "ipv4 ", host);
  }
  [[nodiscard]] std::optional<IPv6Bytes> ipv6Address(std::string_view host) const override {
    return first(ipv6_, "ipv6 ", host);
  }

 private:
  template <typename Bytes>
  using Hosts = std::map<std::string, std::vector<Bytes>, std::less<>>;

  template <typename Bytes>
  std::optional<Bytes> first(const Hosts<Bytes>& hosts, std::string kind,
                             std::string_view host) const {
    questions_.push_back(std::move(kind.append(host)));
    const auto found = hosts.find(host);
    return found == hosts.end() ? std::nullopt : std::optional(found->second.front());
  }

  Hosts<IPv4Bytes> ipv4_;
  Hosts<IPv6Bytes> ipv6_;
  mutable std::vector<std::string> questions_;
};

}  // namespace lanternfold
