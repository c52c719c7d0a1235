// The version of the internet protocol, as the hostname tools name it.
#pragma once

#include <cstdint>
#include <optional>

namespace lanternfold {

/// The raw value is the version's number; it stands in stored and exchanged data.
enum class IPVersion : std::int64_t { ipv4 = 4, ipv6 = 6 };

/// The case with this raw value, or none.
[[nodiscard]] constexpr std::optional<IPVersion> ipVersion(std::int64_t rawValue) {
  switch (rawValue) {
    case 4:
      return IPVersion::ipv4;
    case 6:
      return IPVersion::ipv6;
    default:
      return std::nullopt;
  }
}

}  // namespace lanternfold
