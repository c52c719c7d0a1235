// What kind of address a text is, as the hostname tools tell it.
#pragma once

#include <optional>
#include <string_view>

namespace lanternfold {

enum class AddressType { ipv4, ipv6, hostname };

/// The text that stands for the case in stored and exchanged data.
[[nodiscard]] constexpr std::string_view rawValue(AddressType type) {
  switch (type) {
    case AddressType::ipv4:
      return "ipv4";
    case AddressType::ipv6:
      return "ipv6";
    case AddressType::hostname:
      break;
  }
  return "hostname";
}

/// The case with this raw value, compared exactly, or none.
[[nodiscard]] constexpr std::optional<AddressType> addressType(std::string_view raw) {
  for (const AddressType type : {AddressType::ipv4, AddressType::ipv6, AddressType::hostname}) {
    if (rawValue(type) == raw) return type;
  }
  return std::nullopt;
}

}  // namespace lanternfold
