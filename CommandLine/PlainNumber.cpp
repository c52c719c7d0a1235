#include "CommandLine/PlainNumber.h"

#include <algorithm>
#include <charconv>
#include <system_error>

namespace lanternfold {
namespace {

constexpr std::size_t longestNumber = 32;

bool areDigits(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

/// All of `text`, whose characters have been checked.
template <typename Number>
std::optional<Number> converted(std::string_view text) {
  Number number{};
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end) return std::nullopt;
  return number;
}

}  // namespace

std::optional<std::uint64_t> plainWholeNumber(std::string_view text) {
  if (!areDigits(text)) return std::nullopt;
  return converted<std::uint64_t>(text);
}

std::optional<double> plainNumber(std::string_view text) {
  const std::size_t point = text.find('.');
  if (text.size() > longestNumber || !areDigits(text.substr(0, point))) return std::nullopt;
  if (point != std::string_view::npos && !areDigits(text.substr(point + 1))) return std::nullopt;
  return converted<double>(text);
}

}  // namespace lanternfold
