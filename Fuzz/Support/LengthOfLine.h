// The lengths with which the first line of an input begins ("364 170 r").
#pragma once

#include <charconv>
#include <cstddef>
#include <optional>
#include <string_view>
#include <system_error>

namespace lanternfold {

/// Takes a number from 0 to `most`, and the space behind it, off the front of `line`. Without such
/// a number the line stays as it is.
inline std::optional<double> takeLength(std::string_view& line, double most) {
  double length = 0;
  const auto [end, error] = std::from_chars(line.data(), line.data() + line.size(), length);
  if (error != std::errc() || !(length >= 0) || length > most) return std::nullopt;
  line.remove_prefix(static_cast<std::size_t>(end - line.data()));
  if (line.starts_with(' ')) line.remove_prefix(1);
  return length;
}

}  // namespace lanternfold
