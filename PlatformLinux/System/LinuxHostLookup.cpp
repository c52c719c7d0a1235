#include "PlatformLinux/System/LinuxHostLookup.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <netdb.h>
#include <string>
#include <sys/socket.h>
#include <vector>

#include "Support/AsciiHostName.h"

namespace lanternfold {
namespace {

/// A host may have many addresses and names; one with more than fit here has none.
constexpr std::size_t usualBufferSize = 1024;
constexpr std::size_t largestBufferSize = std::size_t{1024} * 1024;
/// Longer ones, which DNS cannot carry, are not looked up.
constexpr std::size_t longestName = NI_MAXHOST;

/// As the C library takes it; none for what it would cut or what is no name.
std::optional<std::string> lookedUpName(std::string_view host) {
  if (host.empty() || host.size() > longestName || host.contains('\0')) return std::nullopt;
  return asciiHostName(host);
}

template <typename Bytes>
std::optional<Bytes> firstAddress(const hostent& host, int family) {
  if (host.h_addrtype != family || host.h_length != sizeof(Bytes)) return std::nullopt;
  if (host.h_addr_list == nullptr || host.h_addr_list[0] == nullptr) return std::nullopt;
  Bytes bytes;
  std::memcpy(bytes.data(), host.h_addr_list[0], sizeof(Bytes));
  return bytes;
}

template <typename Bytes>
std::optional<Bytes> lookUp(std::string_view text, int family) {
  const std::optional<std::string> name = lookedUpName(text);
  if (!name) return std::nullopt;
  for (std::size_t size = usualBufferSize; size <= largestBufferSize; size *= 2) {
    std::vector<char> buffer(size);
    hostent entry{};
    hostent* found = nullptr;
    int fault = 0;
    const int status = ::gethostbyname2_r(name->c_str(), family, &entry, buffer.data(),
                                          buffer.size(), &found, &fault);
    if (status == ERANGE) continue;
    if (status != 0 || found == nullptr) return std::nullopt;
    return firstAddress<Bytes>(*found, family);
  }
  return std::nullopt;
}

}  // namespace

std::optional<IPv4Bytes> LinuxHostLookup::ipv4Address(std::string_view host) const {
  return lookUp<IPv4Bytes>(host, AF_INET);
}

std::optional<IPv6Bytes> LinuxHostLookup::ipv6Address(std::string_view host) const {
  return lookUp<IPv6Bytes>(host, AF_INET6);
}

}  // namespace lanternfold
