#include "PlatformLinux/Netlink/InterfaceName.h"

#include <cstddef>
#include <cstdint>
#include <net/if.h>

namespace lanternfold {

namespace {

struct SequenceShape {
  std::size_t length = 0;  // 0: no sequence begins with this byte
  std::uint32_t bits = 0;
  std::uint32_t smallest = 0;  // below it a shorter sequence had to be used
};

SequenceShape sequenceShape(std::uint8_t first) {
  if (first < 0x80) return {1, first, 0};
  if (first >= 0xC2 && first < 0xE0) return {2, first & 0x1FU, 0x80};
  if (first >= 0xE0 && first < 0xF0) return {3, first & 0x0FU, 0x800};
  if (first >= 0xF0 && first < 0xF5) return {4, first & 0x07U, 0x10000};
  return {};
}

// The length of the UTF-8 sequence that `text` begins with when it stands for a visible character;
// 0 otherwise.
std::size_t visibleSequenceLength(std::string_view text) {
  const SequenceShape shape = sequenceShape(static_cast<std::uint8_t>(text.front()));
  if (shape.length == 0 || shape.length > text.size()) return 0;
  std::uint32_t point = shape.bits;
  for (std::size_t offset = 1; offset < shape.length; ++offset) {
    const auto byte = static_cast<std::uint8_t>(text[offset]);
    if ((byte & 0xC0) != 0x80) return 0;
    point = point << 6 | (byte & 0x3FU);
  }
  const bool isControl = point <= 0x20 || (point >= 0x7F && point <= 0xA0);
  const bool isSurrogate = point >= 0xD800 && point <= 0xDFFF;
  if (point < shape.smallest || point > 0x10FFFF || isControl || isSurrogate) return 0;
  return shape.length;
}

}  // namespace

bool isTrustworthyInterfaceName(std::string_view name) {
  if (name.empty() || name.size() >= IFNAMSIZ || name == "." || name == "..") return false;
  if (name.find_first_of("/:") != std::string_view::npos) return false;
  while (!name.empty()) {
    const std::size_t length = visibleSequenceLength(name);
    if (length == 0) return false;
    name.remove_prefix(length);
  }
  return true;
}

}  // namespace lanternfold
