#include "ViewTree/DisplayableText.h"

#include <array>
#include <cstdint>
#include <optional>

namespace lanternfold {
namespace {

constexpr std::string_view ellipsis = "\u2026";
constexpr std::string_view replacement = "\uFFFD";

struct Character {
  char32_t value = 0;
  std::size_t length = 0;
};

/// The number of bytes that a first byte announces; 0 for one that begins no character.
std::size_t announcedLength(std::uint8_t first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first < 0xE0) return 2;
  if (first >= 0xE0 && first < 0xF0) return 3;
  if (first >= 0xF0 && first < 0xF5) return 4;
  return 0;
}

/// The character at the beginning of `bytes`; none when they begin no valid one (overlong forms,
/// surrogates and values above U+10FFFF included).
std::optional<Character> firstCharacter(std::string_view bytes) {
  const auto first = static_cast<std::uint8_t>(bytes.front());
  const std::size_t length = announcedLength(first);
  if (length == 0 || length > bytes.size()) return std::nullopt;
  if (length == 1) return Character{first, 1};
  char32_t value = first & (0x7FU >> length);
  for (const char next : bytes.substr(1, length - 1)) {
    const auto byte = static_cast<std::uint8_t>(next);
    if ((byte & 0xC0U) != 0x80U) return std::nullopt;
    value = (value << 6) | (byte & 0x3FU);
  }
  constexpr std::array<char32_t, 5> smallest = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
  if (value < smallest[length] || surrogate || value > 0x10FFFF) return std::nullopt;
  return Character{value, length};
}

bool isControl(char32_t value) {
  return value < 0x20 || (value >= 0x7F && value < 0xA0) || value == 0x2028 || value == 0x2029;
}

bool isDirectionalOverride(char32_t value) {
  return (value >= 0x202A && value <= 0x202E) || (value >= 0x2066 && value <= 0x2069);
}

}  // namespace

std::string displayableText(std::string_view text) {
  std::string shown;
  std::size_t count = 0;
  while (!text.empty()) {
    if (count == maximumShownCharacters) return shown.append(ellipsis);
    const std::optional<Character> character = firstCharacter(text);
    const std::size_t length = character ? character->length : 1;
    if (!character) {
      shown += replacement;
    } else if (isControl(character->value)) {
      shown += ' ';
    } else if (!isDirectionalOverride(character->value)) {
      shown += text.substr(0, length);
    }
    text.remove_prefix(length);
    ++count;
  }
  return shown;
}

}  // namespace lanternfold
