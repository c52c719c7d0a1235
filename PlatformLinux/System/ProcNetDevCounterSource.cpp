#include "PlatformLinux/System/ProcNetDevCounterSource.h"

#include <cstddef>
#include <cstdint>
#include <net/if.h>
#include <string>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <utility>
#include <vector>

#include "PlatformLinux/Netlink/CounterRecords.h"
#include "PlatformLinux/Netlink/ProcNetDev.h"
#include "PlatformLinux/System/FileDescriptor.h"
#include "PlatformLinux/System/TextFile.h"

namespace lanternfold {

namespace {

// The interfaces of this very thread's network namespace.
constexpr const char* countersPath = "/proc/thread-self/net/dev";
// A line takes about 130 bytes; this holds half a million of them.
constexpr std::size_t longestText = 64 * 1024 * 1024;

std::uint64_t mtuOf(const FileDescriptor& socket, const std::string& name) {
  ifreq request{};
  name.copy(request.ifr_name, IFNAMSIZ - 1);
  if (ioctl(socket.get(), SIOCGIFMTU, &request) != 0 || request.ifr_mtu < 0) return 0;
  return static_cast<std::uint64_t>(request.ifr_mtu);
}

}  // namespace

std::expected<ConnectionMetricsMap, NetworkKernelError> ProcNetDevCounterSource::read() {
  const auto text = readTextFile(countersPath, longestText);
  if (!text) return std::unexpected(NetworkKernelError::refused);
  const auto lines = parseProcNetDev(*text);
  if (!lines) return std::unexpected(NetworkKernelError::malformed);
  const FileDescriptor socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
  std::vector<ConnectionMetricsMap::Entry> links;
  links.reserve(lines->size());
  for (const ProcNetDevLine& line : *lines) {
    links.push_back({line.name, connectionMetricsOf(line.counters, mtuOf(socket, line.name))});
  }
  return ConnectionMetricsMap::of(std::move(links));
}

}  // namespace lanternfold
