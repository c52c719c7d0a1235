#include "PlatformDarwin/BootTimeDecoder.h"

#include <bit>
#include <cstdint>

#include "PlatformDarwin/MessageBytes.h"

namespace lanternfold::darwin {
namespace {

constexpr std::size_t timevalSize = 16;
constexpr std::size_t secondsOffset = 0;       // 64 bits, signed
constexpr std::size_t microsecondsOffset = 8;  // 32 bits, signed; 4 bytes of padding follow

}  // namespace

std::optional<std::chrono::system_clock::time_point> decodeBootTime(
    std::span<const std::byte> value) {
  using std::chrono::system_clock;
  if (value.size() != timevalSize) return std::nullopt;
  const MessageBytes bytes(value);
  const std::chrono::seconds seconds(
      std::bit_cast<std::int64_t>(*bytes.number<std::uint64_t>(secondsOffset)));
  const std::chrono::microseconds microseconds(
      std::bit_cast<std::int32_t>(*bytes.number<std::uint32_t>(microsecondsOffset)));

  // A 32-bit count of microseconds is less than an hour either way.
  constexpr auto reach =
      std::chrono::duration_cast<std::chrono::seconds>(system_clock::duration::max()) -
      std::chrono::hours(1);
  if (seconds > reach || seconds < -reach) return std::nullopt;
  return system_clock::time_point(std::chrono::duration_cast<system_clock::duration>(seconds) +
                                  microseconds);
}

}  // namespace lanternfold::darwin
