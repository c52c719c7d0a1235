// A map keyed by interface name, without an order.
//
// Made by: `SNUtils`, `NetUtils`. Hashed rather than ordered: ten thousand interfaces are looked up
// several times each in one walk, and every caller that shows a list sorts it anyway.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace lanternfold {

/// Hashes owned and borrowed texts alike, so that a look-up makes no string.
struct InterfaceNameHash {
  using is_transparent = void;
  [[nodiscard]] std::size_t operator()(std::string_view name) const {
    return std::hash<std::string_view>{}(name);
  }
};

template <typename Value>
using InterfaceNameMap = std::unordered_map<std::string, Value, InterfaceNameHash, std::equal_to<>>;

}  // namespace lanternfold
