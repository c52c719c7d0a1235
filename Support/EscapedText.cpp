#include "Support/EscapedText.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include "Support/FatalError.h"

namespace lanternfold {

namespace {

bool canBeShown(const TextCharacter& character) {
  if (!character.isValid) return false;
  const auto codePoint = static_cast<UChar32>(character.codePoint);
  switch (u_charType(codePoint)) {
    case U_CONTROL_CHAR:
    case U_LINE_SEPARATOR:
    case U_PARAGRAPH_SEPARATOR:
      return false;
    default:
      return !u_hasBinaryProperty(codePoint, UCHAR_BIDI_CONTROL);
  }
}

void appendEscaped(std::string& result, std::string_view bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  for (const char byte : bytes) {
    const auto value = static_cast<std::uint8_t>(byte);
    result += "\\x";
    result += digits[value >> 4U];
    result += digits[value & 0xFU];
  }
}

}  // namespace

TextCharacter firstCharacter(std::string_view text) {
  if (text.empty()) fatalError("the first character of an empty text was asked for");
  const auto lead = static_cast<std::uint8_t>(text.front());
  const int trailCount = U8_COUNT_TRAIL_BYTES(lead);
  const auto bytes = text.substr(0, static_cast<std::size_t>(trailCount) + 1);
  std::array<char16_t, 2> units{};
  std::int32_t count = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8(units.data(), units.size(), &count, bytes.data(),
                static_cast<std::int32_t>(bytes.size()), &status);
  if (U_FAILURE(status)) return {.bytes = text.substr(0, 1), .codePoint = 0, .isValid = false};
  const UChar32 codePoint = count == 2 ? U16_GET_SUPPLEMENTARY(units[0], units[1]) : units[0];
  return {.bytes = bytes, .codePoint = static_cast<char32_t>(codePoint), .isValid = true};
}

std::string escapedText(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const TextCharacter character = firstCharacter(text);
    if (canBeShown(character)) {
      result += character.bytes;
    } else {
      appendEscaped(result, character.bytes);
    }
    text.remove_prefix(character.bytes.size());
  }
  return result;
}

}  // namespace lanternfold
