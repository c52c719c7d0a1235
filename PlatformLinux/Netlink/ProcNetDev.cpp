#include "PlatformLinux/Netlink/ProcNetDev.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "PlatformLinux/Netlink/InterfaceName.h"

namespace lanternfold {

namespace {

constexpr std::size_t headingLines = 2;

// The columns: eight of the received side, then eight of the sent side.
enum Column : std::size_t {
  receivedBytes = 0,
  receivedPackets = 1,
  receivedErrors = 2,
  receivedDropped = 3,
  receivedMulticast = 7,
  sentBytes = 8,
  sentPackets = 9,
  sentErrors = 10,
  sentDropped = 11,
  collisions = 13,
  columnCount = 16,
};

using Columns = std::array<std::uint64_t, columnCount>;

std::optional<std::string_view> takeLine(std::string_view& text) {
  if (text.empty()) return std::nullopt;
  const std::string_view line = text.substr(0, text.find('\n'));
  text.remove_prefix(std::min(text.size(), line.size() + 1));
  return line;
}

std::string_view withoutLeadingSpaces(std::string_view text) {
  return text.substr(std::min(text.size(), text.find_first_not_of(' ')));
}

std::expected<Columns, DecodeError> parseColumns(std::string_view text) {
  Columns columns{};
  for (std::uint64_t& column : columns) {
    text = withoutLeadingSpaces(text);
    if (text.empty()) return std::unexpected(DecodeError{DecodeProblem::missing, "counter"});
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, column);
    if (error != std::errc() || (rest != end && *rest != ' ')) {
      return std::unexpected(DecodeError{DecodeProblem::badValue, "counter"});
    }
    text.remove_prefix(static_cast<std::size_t>(rest - text.data()));
  }
  return columns;
}

LinkCounters64 countersOf(const Columns& columns) {
  return {.receivedPackets = columns[receivedPackets],
          .sentPackets = columns[sentPackets],
          .receivedBytes = columns[receivedBytes],
          .sentBytes = columns[sentBytes],
          .receivedErrors = columns[receivedErrors],
          .sentErrors = columns[sentErrors],
          .receivedDropped = columns[receivedDropped],
          .sentDropped = columns[sentDropped],
          .multicast = columns[receivedMulticast],
          .collisions = columns[collisions]};
}

}  // namespace

std::expected<std::vector<ProcNetDevLine>, DecodeError> parseProcNetDev(std::string_view text) {
  for (std::size_t line = 0; line < headingLines; ++line) {
    if (!takeLine(text)) return std::unexpected(DecodeError{DecodeProblem::truncated, "heading"});
  }
  std::vector<ProcNetDevLine> lines;
  while (const auto line = takeLine(text)) {
    // A name has no colon of its own: the kernel does not let one in.
    const std::size_t colon = line->find(':');
    if (colon == std::string_view::npos) {
      return std::unexpected(DecodeError{DecodeProblem::missing, "name"});
    }
    const auto columns = parseColumns(line->substr(colon + 1));
    if (!columns) return std::unexpected(columns.error());
    const std::string_view name = withoutLeadingSpaces(line->substr(0, colon));
    if (isTrustworthyInterfaceName(name))
      lines.push_back({std::string(name), countersOf(*columns)});
  }
  return lines;
}

}  // namespace lanternfold
