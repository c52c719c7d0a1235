// The interface list (NET_RT_IFLIST2) as link records with 64-bit counters. Pure.
#pragma once

#include <cstddef>
#include <expected>
#include <span>
#include <vector>

#include "Platform/NetworkKernel.h"

namespace lanternfold::darwin {

/// One record for each message that describes an interface (RTM_IFINFO2) and whose first socket
/// address is a link-level one, in the order of the messages, two of one name included. Messages of
/// other types are passed over, and so is one whose name is empty, does not lie inside its address
/// or leaves no room for a terminator in the 16 bytes that a name has.
///
/// Fails with `malformed` when the list does not divide into messages or such a message is shorter
/// than its header.
[[nodiscard]] std::expected<std::vector<LinkRecord>, NetworkKernelError> decodeInterfaceList(
    std::span<const std::byte> dump);

}  // namespace lanternfold::darwin
