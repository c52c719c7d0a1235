#include "PlatformLinux/System/LinuxResolverConfiguration.h"

#include <arpa/inet.h>
#include <cstring>
#include <fstream>
#include <netinet/in.h>
#include <resolv.h>
#include <string>

namespace lanternfold {

namespace {

/// One initialised resolver state; closed when it goes.
class ResolverState {
 public:
  ResolverState() : isReady_(res_ninit(&state_) == 0) {}
  ~ResolverState() {
    if (isReady_) res_nclose(&state_);
  }
  ResolverState(const ResolverState&) = delete;
  ResolverState& operator=(const ResolverState&) = delete;

  [[nodiscard]] bool isReady() const { return isReady_; }
  [[nodiscard]] const struct __res_state& operator*() const { return state_; }

 private:
  struct __res_state state_ = {};
  bool isReady_ = false;
};

template <typename Bytes, typename Address>
Bytes bytesOf(const Address& address) {
  static_assert(sizeof(Bytes) == sizeof(Address));
  Bytes bytes;
  std::memcpy(bytes.data(), &address, sizeof(bytes));
  return bytes;
}

/// glibc keeps the IPv4 server of a place in one list and the IPv6 server of a place in another,
/// the place in the list that is not meant being empty.
SocketAddress serverAt(const struct __res_state& state, int place) {
  const sockaddr_in& server4 = state.nsaddr_list[place];
  const sockaddr_in6* const server6 = state._u._ext.nsaddrs[place];
  if (server4.sin_family == AF_INET) {
    return bytesOf<IPv4Bytes>(server4.sin_addr);
  }
  if (server6 != nullptr && server6->sin6_family == AF_INET6) {
    return bytesOf<IPv6Bytes>(server6->sin6_addr);
  }
  return OtherAddress{};
}

bool isCLibrarysGuess(const std::vector<SocketAddress>& servers) {
  if (servers.size() != 1 || servers.front() != SocketAddress(IPv4Bytes{127, 0, 0, 1})) {
    return false;
  }
  std::ifstream file("/etc/resolv.conf");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("nameserver")) return false;
  }
  return true;
}

}  // namespace

std::optional<std::vector<SocketAddress>> LinuxResolverConfiguration::dnsServers() const {
  const ResolverState state;
  if (!state.isReady()) return std::nullopt;
  std::vector<SocketAddress> servers;
  for (int place = 0; place < (*state).nscount && place < MAXNS; ++place) {
    servers.push_back(serverAt(*state, place));
  }
  if (isCLibrarysGuess(servers)) servers.clear();
  return servers;
}

}  // namespace lanternfold
