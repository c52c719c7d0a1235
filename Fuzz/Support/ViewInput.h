// Inputs whose first line says in what a view is laid out ("364 170 r"), and whose rest is its
// archive.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <system_error>

namespace lanternfold {

struct ViewInput {
  std::string_view line;
  std::string_view archive;
};

inline ViewInput viewInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::size_t end = std::min(input.find('\n'), input.size());
  return {input.substr(0, end), input.substr(std::min(end + 1, input.size()))};
}

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
