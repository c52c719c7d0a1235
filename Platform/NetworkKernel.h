// The seam to the kernel's network tables: addresses, links, routes, names by index, boot time.
//
// Linux side: `LinuxNetworkKernel` (rtnetlink). Fake: `FakeNetworkKernel`. Both pass the same
// contract tests. The other kernel's messages decode to the same records in `PlatformDarwin/`,
// whose tests compare the records themselves: there is no such kernel to ask.
#pragma once

#include <chrono>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/SocketAddress.h"

namespace lanternfold {

/// Why a kernel table could not be read.
enum class NetworkKernelError {
  refused,      ///< the kernel or a sandbox does not allow the request
  malformed,    ///< an answer was cut short or contradicts itself
  interrupted,  ///< the table kept changing while it was read, also after several tries
  failed,       ///< any other failure of the system call
};

/// The 32-bit statistics block that comes with a link-level address entry. Bytes, packets and
/// errors wrap at 2^32.
struct LinkStatistics32 {
  std::uint32_t sentBytes = 0;
  std::uint32_t recvBytes = 0;
  std::uint32_t sentErrors = 0;
  std::uint32_t recvErrors = 0;
  std::uint32_t sentPackets = 0;
  std::uint32_t recvPackets = 0;
  std::uint32_t collisions = 0;
  std::uint32_t mtu = 0;  ///< bytes
  friend bool operator==(const LinkStatistics32&, const LinkStatistics32&) = default;
};

/// One entry of the kernel's address list: a link, or one address of a link.
struct AddressEntry {
  /// The interface's name. Absent only in a malformed record.
  std::optional<std::string> name;
  /// The address. A link entry always carries a `LinkAddress`, of zero bytes for a link without a
  /// hardware address; absent only in a malformed record. Whoever fills the list drops an address
  /// message that holds no address, as that of an unnumbered point-to-point end.
  std::optional<SocketAddress> address;
  /// The mask, of the same family as `address`; absent for link entries and when unknown.
  std::optional<SocketAddress> netmask;
  /// Present with link entries; all zero when the kernel sent no counters.
  std::optional<LinkStatistics32> statistics;
  friend bool operator==(const AddressEntry&, const AddressEntry&) = default;
};

/// One link with its 64-bit counters.
struct LinkRecord {
  std::string name;
  std::uint32_t index = 0;
  /// Zero bytes when the link has none.
  LinkAddress hardwareAddress;
  std::uint8_t type = 0;       ///< interface-type code: 6 Ethernet and Wi-Fi, 24 loopback, 1 other
  std::uint8_t physical = 0;   ///< always 0 on Linux
  std::uint64_t baudrate = 0;  ///< link speed in bit/s, 0 when unknown
  std::uint32_t mtu = 0;       ///< bytes
  std::uint64_t recvBytes = 0;
  std::uint64_t sentBytes = 0;
  std::uint64_t recvPackets = 0;
  std::uint64_t sentPackets = 0;
  std::uint64_t recvErrors = 0;
  std::uint64_t sentErrors = 0;
  std::uint64_t collisions = 0;
  friend bool operator==(const LinkRecord&, const LinkRecord&) = default;
};

enum class RouteFamily { ipv4, ipv6 };

/// One route through a gateway.
struct RouteRecord {
  /// The destination's network address without its length; 0.0.0.0 or :: for a default route. A
  /// default route is told by this address alone, so that 0.0.0.0/1 through a gateway counts as
  /// one.
  std::optional<SocketAddress> destination;
  std::optional<SocketAddress> gateway;
  /// The outgoing interface.
  std::uint32_t interfaceIndex = 0;
  friend bool operator==(const RouteRecord&, const RouteRecord&) = default;
};

/// One look at the kernel's tables. Each table is fetched at most once, when it is first asked for,
/// and then stays as it was: one walk sees one table. Not shared between threads.
class NetworkKernelReading {
 public:
  virtual ~NetworkKernelReading() = default;

  /// Every link, then every address, each in the kernel's order; empty on a machine without any.
  [[nodiscard]] virtual const std::expected<std::vector<AddressEntry>, NetworkKernelError>&
  addressEntries() = 0;

  /// Every link in the kernel's order.
  [[nodiscard]] virtual const std::expected<std::vector<LinkRecord>, NetworkKernelError>&
  linkRecords() = 0;

  /// The routes of the main table that have a gateway, in dump order.
  [[nodiscard]] virtual const std::expected<std::vector<RouteRecord>, NetworkKernelError>& routes(
      RouteFamily family) = 0;

  /// The name that belongs to an interface index; none for an index that no interface has.
  [[nodiscard]] virtual std::optional<std::string> interfaceName(std::uint32_t index) = 0;
};

/// Stateless from the outside; any thread may begin a reading. Calls block for the length of a few
/// system calls and never wait for the network.
class NetworkKernel {
 public:
  virtual ~NetworkKernel() = default;

  /// Begins a new look at the tables; itself asks the kernel nothing and does not fail.
  [[nodiscard]] virtual std::unique_ptr<NetworkKernelReading> beginReading() const = 0;

  /// When the system booted; none when it cannot be told.
  [[nodiscard]] virtual std::optional<std::chrono::system_clock::time_point> bootTime() const = 0;
};

}  // namespace lanternfold
