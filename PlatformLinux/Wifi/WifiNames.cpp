#include "PlatformLinux/Wifi/WifiNames.h"

#include <string_view>

#include "Support/EscapedText.h"

namespace lanternfold {

std::string ssidText(std::span<const std::uint8_t> ssid) {
  return escapedText(std::string(ssid.begin(), ssid.end()));
}

std::string hardwareAddressText(const HardwareAddress& address) {
  static constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : address) {
    if (!text.empty()) text += ':';
    text += digits[byte >> 4U];
    text += digits[byte & 0xFU];
  }
  return text;
}

}  // namespace lanternfold
