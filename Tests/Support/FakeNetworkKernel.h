// A kernel made of state: links with counters, addresses, routes. A test changes it as an
// administrator would (add, rename, remove) and what it says follows.
//
// Each table can be made to fail, counts how often it was fetched, and can run a test's code just
// before a fetch, so that an interface vanishes between two dumps.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/NetworkKernel.h"

namespace lanternfold {

/// What a link counts and is; a `LinkRecord` without its name and index.
struct FakeLinkCounters {
  std::uint64_t recvBytes = 0;
  std::uint64_t sentBytes = 0;
  std::uint64_t recvPackets = 0;
  std::uint64_t sentPackets = 0;
  std::uint64_t recvErrors = 0;
  std::uint64_t sentErrors = 0;
  std::uint64_t collisions = 0;
};

/// Any thread. References that a reading hands out stay valid as long as the reading.
class FakeNetworkKernel final : public NetworkKernel {
 public:
  enum class Table { addressEntries, linkRecords, ipv4Routes, ipv6Routes, interfaceNames };

  FakeNetworkKernel();
  ~FakeNetworkKernel() override;

  // The state. An operation that names a link which does not exist stops the program.

  /// Adds a link and returns its index: that of `link`, or for zero the next free one. The 32-bit
  /// statistics are the lower halves of the 64-bit counters, as that kernel has them.
  std::uint32_t addLink(LinkRecord link);
  /// An Ethernet link of that name with an MTU of 1500 and no counters.
  std::uint32_t addLink(std::string_view name, const std::vector<std::uint8_t>& hardwareAddress = {
                                                   0x02, 0x42, 0xAC, 0x11, 0x00, 0x02});
  /// The loopback link "lo" with 127.0.0.1/8 and ::1/128.
  std::uint32_t addLoopback();
  void setCounters(std::string_view name, const FakeLinkCounters& counters);
  /// Addresses, routes and counters stay with the link.
  void renameLink(std::string_view from, std::string_view to);
  /// The link's addresses and routes go with it.
  void removeLink(std::string_view name);

  void addIPv4Address(std::string_view link, IPv4Bytes address, IPv4Bytes netmask);
  void addIPv6Address(std::string_view link, IPv6Bytes address, IPv6Bytes netmask);
  /// Any address, with or without a mask.
  void addAddress(std::string_view link, SocketAddress address,
                  std::optional<SocketAddress> netmask);
  void removeAddresses(std::string_view link);

  /// Appends 0.0.0.0 through `gateway` to the routing table.
  void addDefaultRoute(std::string_view link, IPv4Bytes gateway);
  void addRoute(RouteFamily family, RouteRecord route);
  void clearRoutes();

  /// The entries exactly as given, in the place of those that follow from links and addresses; for
  /// malformed and oddly ordered lists.
  void setAddressEntries(std::vector<AddressEntry> entries);
  /// Appended to the link list only, for example a second message of the same name.
  void appendLinkRecord(LinkRecord link);

  void setBootTime(std::optional<std::chrono::system_clock::time_point> moment);

  // Failures and observation.

  /// From now on fetching `table` fails; none ends that.
  void fail(Table table, std::optional<NetworkKernelError> error);
  /// Runs before every fetch of `table`; may change the state.
  void beforeFetching(Table table, std::function<void()> work);
  [[nodiscard]] std::size_t fetchCount(Table table) const;
  [[nodiscard]] std::size_t readingCount() const;

  [[nodiscard]] std::unique_ptr<NetworkKernelReading> beginReading() const override;
  [[nodiscard]] std::optional<std::chrono::system_clock::time_point> bootTime() const override;

 private:
  class Reading;

  struct Address {
    std::uint32_t linkIndex = 0;
    SocketAddress address;
    std::optional<SocketAddress> netmask;
  };

  static constexpr std::size_t tableCount = 5;

  [[nodiscard]] LinkRecord& linkNamed(std::string_view name);
  /// Counts a fetch, lets the test's code run, and says whether the fetch fails.
  [[nodiscard]] std::optional<NetworkKernelError> beginFetch(Table table) const;
  [[nodiscard]] std::vector<AddressEntry> currentAddressEntries() const;
  [[nodiscard]] std::vector<LinkRecord> currentLinkRecords() const;
  [[nodiscard]] std::map<std::uint32_t, std::string> currentNames() const;

  mutable std::mutex mutex_;  // guards everything below
  std::vector<LinkRecord> links_;
  std::vector<LinkRecord> extraLinks_;
  std::vector<Address> addresses_;
  std::array<std::vector<RouteRecord>, 2> routes_;
  std::optional<std::vector<AddressEntry>> givenEntries_;
  std::optional<std::chrono::system_clock::time_point> bootTime_;
  std::array<std::optional<NetworkKernelError>, tableCount> errors_;
  std::array<std::function<void()>, tableCount> beforeFetching_;
  mutable std::array<std::size_t, tableCount> fetchCounts_{};
  mutable std::size_t readingCount_ = 0;
};

}  // namespace lanternfold
