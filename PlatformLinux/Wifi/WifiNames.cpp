#include "PlatformLinux/Wifi/WifiNames.h"

#include <glib.h>
#include <string_view>

namespace lanternfold {

namespace {

void appendHexadecimal(std::string& text, std::uint8_t byte) {
  static constexpr std::string_view digits = "0123456789abcdef";
  text += digits[byte >> 4U];
  text += digits[byte & 0xFU];
}

void appendEscaped(std::string& text, std::string_view bytes) {
  for (const char byte : bytes) {
    text += "\\x";
    appendHexadecimal(text, static_cast<std::uint8_t>(byte));
  }
}

bool canBeShown(gunichar character) {
  switch (g_unichar_type(character)) {
    case G_UNICODE_CONTROL:
    case G_UNICODE_LINE_SEPARATOR:
    case G_UNICODE_PARAGRAPH_SEPARATOR:
      return false;
    default:
      return true;
  }
}

/// The length of the character that the text begins with; 0 when it does not begin with one.
std::size_t characterLength(std::string_view text, gunichar& character) {
  character = g_utf8_get_char_validated(text.data(), static_cast<gssize>(text.size()));
  // Both values that stand for "invalid" and "incomplete" are beyond any character.
  if (character > 0x10FFFF) return 0;
  return static_cast<std::size_t>(g_unichar_to_utf8(character, nullptr));
}

}  // namespace

std::string ssidText(std::span<const std::uint8_t> ssid) {
  const std::string bytes(ssid.begin(), ssid.end());
  std::string text;
  for (std::string_view rest = bytes; !rest.empty();) {
    gunichar character = 0;
    const std::size_t length = characterLength(rest, character);
    const std::string_view taken = rest.substr(0, length == 0 ? 1 : length);
    if (length != 0 && canBeShown(character)) {
      text += taken;
    } else {
      appendEscaped(text, taken);
    }
    rest.remove_prefix(taken.size());
  }
  return text;
}

std::string hardwareAddressText(const HardwareAddress& address) {
  std::string text;
  for (const std::uint8_t byte : address) {
    if (!text.empty()) text += ':';
    appendHexadecimal(text, byte);
  }
  return text;
}

}  // namespace lanternfold
