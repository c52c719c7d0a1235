// The routing table (NET_RT_FLAGS with RTF_GATEWAY) as route records. Pure.
#pragma once

#include <cstddef>
#include <expected>
#include <span>
#include <vector>

#include "Platform/NetworkKernel.h"

namespace lanternfold::darwin {

/// One record for each message that holds a gateway, in the order of the dump. Socket addresses are
/// padded to 8 bytes in an IPv4 dump and not padded at all in an IPv6 one. An address that does not
/// lie inside its message is absent, and so are those after it; a message that is thereby left
/// without a gateway is passed over.
///
/// Fails with `malformed` when the dump does not divide into messages or a message is shorter than
/// its header.
[[nodiscard]] std::expected<std::vector<RouteRecord>, NetworkKernelError> decodeRouteDump(
    std::span<const std::byte> dump, RouteFamily family);

}  // namespace lanternfold::darwin
