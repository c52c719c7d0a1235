// The kernel's network tables over rtnetlink.
//
// Made by: the Linux composition. Read by: `SNUtils` and the 32-bit counter reader.
#pragma once

#include <chrono>
#include <memory>
#include <optional>

#include "Platform/NetworkKernel.h"
#include "PlatformLinux/System/LinuxNetworkKernelReading.h"
#include "PlatformLinux/System/NetlinkSocketPool.h"

namespace lanternfold {

/// Order: links as the kernel dumps them, then addresses as it dumps them, as getifaddrs does. What
/// differs from getifaddrs: an address carries the name of its interface, never an alias label, and
/// every link carries a link address.
///
/// A record that does not decode, such as one with a name that is no name, is left out; a message
/// that does not hold together fails the table. Links and addresses that change while they are
/// dumped are dumped again; when they never rest, the tries together make the table, so that what
/// was there all the time is in it (`DumpTries`). No table fails as interrupted.
///
/// A kernel sees the network namespace of the thread that reads first.
class LinuxNetworkKernel final : public NetworkKernel {
 public:
  LinuxNetworkKernel();

  [[nodiscard]] std::unique_ptr<NetworkKernelReading> beginReading() const override;

  /// The kernel's own figure of /proc/stat ("btime", whole seconds). It moves only when somebody
  /// sets the clock; the difference of two clocks read one after the other would jitter.
  [[nodiscard]] std::optional<std::chrono::system_clock::time_point> bootTime() const override;

 private:
  std::shared_ptr<NetlinkSocketPool> sockets_;
  std::shared_ptr<LinuxNetworkKernelReading::TableSizes> sizes_;
};

}  // namespace lanternfold
