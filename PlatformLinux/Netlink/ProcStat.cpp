#include "PlatformLinux/Netlink/ProcStat.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace lanternfold {

namespace {

constexpr std::string_view bootTimeLabel = "btime ";
// The year 2200; a time point counts nanoseconds in 64 bits and ends in 2262.
constexpr std::int64_t latestBootSeconds = 7'258'118'400;

std::optional<std::chrono::system_clock::time_point> momentOf(std::string_view digits) {
  std::int64_t seconds = 0;
  const char* end = digits.data() + digits.size();
  const auto [rest, error] = std::from_chars(digits.data(), end, seconds);
  if (error != std::errc() || rest != end) return std::nullopt;
  if (seconds < 0 || seconds > latestBootSeconds) return std::nullopt;
  return std::chrono::system_clock::time_point(std::chrono::seconds(seconds));
}

}  // namespace

std::optional<std::chrono::system_clock::time_point> bootTimeInProcStat(std::string_view text) {
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    if (line.starts_with(bootTimeLabel)) return momentOf(line.substr(bootTimeLabel.size()));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
  }
  return std::nullopt;
}

}  // namespace lanternfold
