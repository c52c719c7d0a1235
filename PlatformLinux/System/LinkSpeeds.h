// Asks the kernel for the speeds of links, which link messages do not carry.
//
// Made by: nobody; a function. Read by: `LinuxNetworkKernelReading`.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "PlatformLinux/Netlink/EthtoolMessage.h"

namespace lanternfold {

/// The known speeds of the links with these indexes, in ascending order of the indexes. Links whose
/// driver tells none are left out, and a kernel that refuses leaves all out: a speed is a nicety.
[[nodiscard]] std::vector<LinkSpeed> readLinkSpeeds(
    std::span<const std::uint32_t> interfaceIndexes);

}  // namespace lanternfold
