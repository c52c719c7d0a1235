// The Wi-Fi seam on Linux: what nl80211 tells, without any privilege and without any daemon.
//
// Made by: the program's wiring. Read by: the Wi-Fi resolver (`interface`) and the command line
// (`report`).
#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <vector>

#include "Platform/WifiClient.h"
#include "PlatformLinux/Adapters/DeviceTree.h"
#include "PlatformLinux/System/NetlinkSocketPool.h"
#include "PlatformLinux/Wifi/JoinedCellMemory.h"
#include "PlatformLinux/Wifi/WifiFacts.h"
#include "PlatformLinux/Wifi/WifiReport.h"

namespace lanternfold {

/// Where the client reads: sockets of both protocols, and the device tree for the radio's switch.
struct WifiSources {
  NetlinkChannelOpener genericNetlink;
  NetlinkChannelOpener routeNetlink;
  DeviceTree deviceTree;
  /// Without it the list of cells is asked for at each reading.
  JoinedCellMemory::MayHaveChanged cellsMayHaveChanged = nullptr;
};

/// The kernel that runs this program. For one client.
[[nodiscard]] WifiSources systemWifiSources();

/// Any thread, if the predicate may be asked on any. Names are withheld here, below every reader.
///
/// Power: the radio is on when the kernel has the link up and no switch blocks it. A blocked
/// radio's link is taken down by the kernel; the switch itself is looked at, unless a network is
/// joined, for drivers that do not tell the kernel in time.
///
/// Each reading asks for the interfaces, the peers with their signal and rates, the noise and the
/// country. The list of all cells around is asked for when it may have changed: what counts as a
/// change stands at `JoinedCellMemory`, and an access point among the peers that is none of the
/// cells kept is one as well.
class LinuxWifiClient final : public WifiClient {
 public:
  /// Asked anew for each reading.
  using MayTellNames = std::function<bool()>;

  explicit LinuxWifiClient(MayTellNames mayTellNames, WifiSources sources = systemWifiSources());

  /// Also none when the kernel has no nl80211, or refuses to tell. A figure that is refused on its
  /// own is left out.
  [[nodiscard]] std::optional<WifiInterface> interface() const override;

  /// The same reading with everything else that the kernel told. None on a machine without Wi-Fi;
  /// a kernel that does not list its interfaces is an error, as is (malformed) one that lists none
  /// that could be decoded and could be the default one, and some that could not be decoded.
  [[nodiscard]] WifiReading report() const;

 private:
  /// The generic socket in use, and what to ask it for.
  struct Conversation {
    NetlinkSocket& socket;
    std::uint16_t messageType;
    JoinedCellMemory::Reading reading;
  };

  struct Chosen {
    WifiFacts facts;  ///< the interface and its cells alone
    bool cellsWereKept = false;
  };

  using Facts = std::expected<std::optional<WifiFacts>, NetworkKernelError>;

  [[nodiscard]] Facts readFacts(NetlinkSocket& socket) const;
  [[nodiscard]] Chosen chooseInterface(const Conversation& conversation,
                                       std::vector<WifiInterfaceMessage> candidates) const;
  [[nodiscard]] JoinedCellMemory::Cells listedCells(const Conversation& conversation,
                                                    const WifiInterfaceMessage& interface) const;
  [[nodiscard]] bool isPoweredOn(const WifiFacts& facts) const;

  MayTellNames mayTellNames_;
  DeviceTree deviceTree_;
  mutable NetlinkSocketPool genericSockets_;
  mutable NetlinkSocketPool routeSockets_;
  mutable JoinedCellMemory cellMemory_;
};

}  // namespace lanternfold
