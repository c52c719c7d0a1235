// One look at the kernel's tables: each is dumped when it is first asked for and kept.
//
// Made by: `LinuxNetworkKernel`. Read by: `SNUtils` and the 32-bit counter reader.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/NetworkKernel.h"
#include "PlatformLinux/System/NetlinkSocket.h"
#include "PlatformLinux/System/NetlinkSocketPool.h"

namespace lanternfold {

/// Costs: one dump of the links serves `addressEntries`, `linkRecords` and `interfaceName`; there
/// is one more of the addresses and one for each family of routes. `linkRecords` also asks for the
/// speeds of those links that have one.
class LinuxNetworkKernelReading final : public NetworkKernelReading {
 public:
  /// How large the tables were when they were last read: the room that the next reading makes.
  struct TableSizes {
    std::atomic<std::size_t> links = 0;
    std::atomic<std::size_t> addresses = 0;
  };

  /// Borrows its socket from `sockets` for as long as it lives. `sizes` may be shared by readings
  /// of any thread.
  LinuxNetworkKernelReading(std::shared_ptr<NetlinkSocketPool> sockets,
                            std::shared_ptr<TableSizes> sizes);
  ~LinuxNetworkKernelReading() override;
  LinuxNetworkKernelReading(const LinuxNetworkKernelReading&) = delete;
  LinuxNetworkKernelReading& operator=(const LinuxNetworkKernelReading&) = delete;

  [[nodiscard]] const std::expected<std::vector<AddressEntry>, NetworkKernelError>& addressEntries()
      override;
  [[nodiscard]] const std::expected<std::vector<LinkRecord>, NetworkKernelError>& linkRecords()
      override;
  [[nodiscard]] const std::expected<std::vector<RouteRecord>, NetworkKernelError>& routes(
      RouteFamily family) override;
  [[nodiscard]] std::optional<std::string> interfaceName(std::uint32_t index) override;

 private:
  struct IndexPosition {
    std::uint32_t index = 0;
    std::uint32_t position = 0;
  };

  void readLinks();
  void readSpeeds(const std::vector<std::uint32_t>& candidates);
  [[nodiscard]] std::expected<std::vector<AddressEntry>, NetworkKernelError> readAddressEntries();
  [[nodiscard]] std::expected<std::vector<RouteRecord>, NetworkKernelError> dumpRoutes(
      RouteFamily family);
  [[nodiscard]] std::optional<std::size_t> positionOfLink(std::uint32_t index);
  [[nodiscard]] std::expected<NetlinkSocket*, NetworkKernelError> socket();

  std::shared_ptr<NetlinkSocketPool> sockets_;
  std::shared_ptr<TableSizes> sizes_;
  std::optional<NetlinkSocket> socket_;  // once the first table was asked for
  std::optional<std::expected<std::vector<LinkRecord>, NetworkKernelError>> linkRecords_;
  std::vector<LinkStatistics32> statistics_;  // one for each link record
  std::vector<IndexPosition> positions_;      // of the link records, ascending by index
  std::size_t lastFound_ = 0;                 // in `positions_`, by the last look-up
  std::optional<std::expected<std::vector<AddressEntry>, NetworkKernelError>> addressEntries_;
  std::optional<std::expected<std::vector<RouteRecord>, NetworkKernelError>> ipv4Routes_;
  std::optional<std::expected<std::vector<RouteRecord>, NetworkKernelError>> ipv6Routes_;
};

}  // namespace lanternfold
