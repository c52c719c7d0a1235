// The sizes of the address families.
//
// Read by: the address and route decoders.
#pragma once

#include <cstdint>
#include <sys/socket.h>

namespace lanternfold {

/// The longest prefix of a family in bits; for a family that is not read, whatever fits the field.
[[nodiscard]] constexpr std::uint8_t longestPrefixOf(std::uint8_t family) {
  if (family == AF_INET) return 32;
  if (family == AF_INET6) return 128;
  return 255;
}

}  // namespace lanternfold
