#include "Wiring/RefreshInterval.h"

#include <charconv>
#include <cstdint>
#include <string>
#include <system_error>

#include "Wiring/PrintableText.h"

namespace lanternfold {

std::expected<std::chrono::seconds, CommandFailure> parseRefreshInterval(std::string_view text) {
  constexpr std::uint32_t shortest = 10;
  constexpr std::uint32_t longest = 86400;
  std::uint32_t seconds = 0;
  const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
  const bool isNumber = error == std::errc{} && rest == text.data() + text.size();
  if (isNumber && seconds >= shortest && seconds <= longest) return std::chrono::seconds(seconds);
  return std::unexpected(badArguments(std::string("--refresh-interval takes ") +
                                      refreshIntervalValues + ", not " + inQuotes(text)));
}

}  // namespace lanternfold
