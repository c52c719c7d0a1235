#include "PlatformLinux/System/LinuxNetworkKernel.h"

#include "PlatformLinux/Netlink/ProcStat.h"
#include "PlatformLinux/System/TextFile.h"

namespace lanternfold {

namespace {

// The file grows with the number of processors and interrupts; this holds thousands of each.
constexpr std::size_t longestProcStat = 4 * 1024 * 1024;

}  // namespace

LinuxNetworkKernel::LinuxNetworkKernel()
    : sockets_(std::make_shared<NetlinkSocketPool>()),
      sizes_(std::make_shared<LinuxNetworkKernelReading::TableSizes>()) {}

std::unique_ptr<NetworkKernelReading> LinuxNetworkKernel::beginReading() const {
  return std::make_unique<LinuxNetworkKernelReading>(sockets_, sizes_);
}

std::optional<std::chrono::system_clock::time_point> LinuxNetworkKernel::bootTime() const {
  const auto text = readTextFile("/proc/stat", longestProcStat);
  return text ? bootTimeInProcStat(*text) : std::nullopt;
}

}  // namespace lanternfold
