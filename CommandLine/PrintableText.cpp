#include "CommandLine/PrintableText.h"

#include <glib.h>

namespace lanternfold {
namespace {

/// One character of a text, or one byte that begins no valid sequence.
struct Character {
  std::string_view bytes;
  gunichar codePoint = 0;
  bool valid = false;
};

Character firstCharacter(std::string_view text) {
  const gunichar codePoint =
      g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
  // Both error values, "invalid" and "cut short", lie above every code point; NUL is a control
  // character like others, though the look-up calls it cut short.
  if (text.front() != '\0' && codePoint >= static_cast<gunichar>(-2)) {
    return {.bytes = text.substr(0, 1), .codePoint = 0, .valid = false};
  }
  if (text.front() == '\0') return {.bytes = text.substr(0, 1), .codePoint = 0, .valid = true};
  const auto length = static_cast<std::size_t>(g_unichar_to_utf8(codePoint, nullptr));
  return {.bytes = text.substr(0, length), .codePoint = codePoint, .valid = true};
}

/// Control characters, line breaks, and the marks that turn the writing direction, which could make
/// one name read as another.
bool isUnsafe(gunichar codePoint) {
  const bool turnsDirection =
      (codePoint >= 0x202A && codePoint <= 0x202E) || (codePoint >= 0x2066 && codePoint <= 0x2069);
  const bool breaksLine = codePoint == 0x2028 || codePoint == 0x2029;
  return g_unichar_iscntrl(codePoint) != 0 || turnsDirection || breaksLine;
}

void appendEscaped(std::string& result, std::string_view bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  for (const char byte : bytes) {
    const auto value = static_cast<unsigned char>(byte);
    result += "\\x";
    result += digits[value >> 4U];
    result += digits[value & 0xFU];
  }
}

void appendPrintable(std::string& result, const Character& character) {
  if (character.valid && !isUnsafe(character.codePoint)) {
    result += character.bytes;
  } else {
    appendEscaped(result, character.bytes);
  }
}

Character takeCharacter(std::string_view& text) {
  const Character character = firstCharacter(text);
  text.remove_prefix(character.bytes.size());
  return character;
}

}  // namespace

std::string printable(std::string_view text) {
  std::string result;
  while (!text.empty()) appendPrintable(result, takeCharacter(text));
  return result;
}

std::string inQuotes(std::string_view text) {
  constexpr int mostCharacters = 64;
  std::string result = "\"";
  for (int count = 0; count < mostCharacters && !text.empty(); ++count) {
    appendPrintable(result, takeCharacter(text));
  }
  return result + (text.empty() ? "\"" : "\u2026\"");
}

std::size_t terminalWidth(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) {
    const Character character = firstCharacter(text);
    if (!character.valid || g_unichar_iszerowidth(character.codePoint) == 0) {
      width += character.valid && g_unichar_iswide(character.codePoint) != 0 ? 2U : 1U;
    }
    text.remove_prefix(character.bytes.size());
  }
  return width;
}

}  // namespace lanternfold
