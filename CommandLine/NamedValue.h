// Values that have a name on the command line.
//
// Used by: the checks of options that take one of a few words.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace lanternfold {

template <typename Value>
struct NamedValue {
  std::string_view name;
  Value value;
};

/// The value called `name`, or null.
template <typename Value, std::size_t count>
[[nodiscard]] const Value* valueNamed(const std::array<NamedValue<Value>, count>& values,
                                      std::string_view name) {
  const auto found = std::ranges::find(values, name, &NamedValue<Value>::name);
  return found == values.end() ? nullptr : &found->value;
}

}  // namespace lanternfold
