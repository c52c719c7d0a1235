#include "CommandLine/WifiFigures.h"

#include <locale>
#include <span>
#include <sstream>

#include "NetworkMonitor/Wlan/WlanTexts.h"

namespace lanternfold {

namespace {

/// As short as it goes: "866.7", "1300".
std::string shortNumber(double value) {
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text.precision(9);
  text << value;
  return text.str();
}

std::string joinedBy(std::string_view separator, std::span<const std::string> parts) {
  std::string text;
  for (const std::string& part : parts) {
    if (!text.empty()) text += separator;
    text += part;
  }
  return text;
}

std::string_view bandText(WifiChannelBand band) {
  switch (band) {
    case WifiChannelBand::band2GHz:
      return "2.4 GHz";
    case WifiChannelBand::band5GHz:
      return "5 GHz";
    case WifiChannelBand::band6GHz:
      return "6 GHz";
    case WifiChannelBand::unknown:
      break;
  }
  return "another band";
}

}  // namespace

std::string decibelsText(std::int64_t decibels) { return std::to_string(decibels) + " dBm"; }

std::string megabitsText(double megabits) { return shortNumber(megabits) + " Mbit/s"; }

std::string powerText(std::int64_t millibels, std::int64_t milliwatts) {
  constexpr double millibelsOfDecibel = 100;
  return shortNumber(static_cast<double>(millibels) / millibelsOfDecibel) + " dBm (" +
         std::to_string(milliwatts) + " mW)";
}

std::string durationText(std::uint32_t seconds) {
  constexpr std::uint32_t minute = 60;
  constexpr std::uint32_t hour = 60 * minute;
  if (seconds < minute) return std::to_string(seconds) + " s";
  const std::string minutes = std::to_string(seconds % hour / minute) + " min";
  if (seconds < hour) return minutes + " " + std::to_string(seconds % minute) + " s";
  return std::to_string(seconds / hour) + " h " + minutes;
}

std::string generationText(WifiGeneration generation) {
  switch (generation) {
    case WifiGeneration::legacy:
      return "802.11a, b or g";
    case WifiGeneration::ht:
      return "802.11n (Wi-Fi 4)";
    case WifiGeneration::vht:
      return "802.11ac (Wi-Fi 5)";
    case WifiGeneration::he:
      return "802.11ax (Wi-Fi 6)";
    case WifiGeneration::eht:
      break;
  }
  return "802.11be (Wi-Fi 7)";
}

std::string rateText(const WifiRate& rate) {
  std::vector<std::string> parts;
  if (rate.modulation) parts.push_back("MCS " + std::to_string(*rate.modulation));
  if (rate.streams) {
    parts.push_back(std::to_string(*rate.streams) + (*rate.streams == 1 ? " stream" : " streams"));
  }
  parts.push_back(std::to_string(rate.widthMegahertz) + " MHz");
  if (rate.guardIntervalNanoseconds) {
    parts.push_back("guard interval " + std::to_string(*rate.guardIntervalNanoseconds) + " ns");
  }
  const std::string details = joinedBy(", ", parts);
  return rate.bitrate ? megabitsText(rate.megabits()) + " (" + details + ")" : details;
}

std::string protectionText(WifiSecurity security, const StringTable& strings) {
  switch (security) {
    case WifiSecurity::owe:
      return "Enhanced Open";
    case WifiSecurity::oweTransition:
      return "Enhanced Open, or none";
    case WifiSecurity::unknown:
      return {};
    default:
      return securityText(security, strings);
  }
}

std::string suitesText(const WifiProtection& protection) {
  std::string text = joinedBy(", ", protection.authentications) + "; " +
                     joinedBy(", ", protection.pairwiseCiphers) + ", group " +
                     protection.groupCipher;
  if (protection.requiresManagementProtection) return text + "; management frames protected";
  if (protection.offersManagementProtection) {
    return text + "; management frames protected if the client can";
  }
  return text;
}

std::string linkChannelText(const WifiLink& link) {
  if (!link.channel) return {};
  std::string text = std::to_string(link.channel->channelNumber) + " (" +
                     std::string(bandText(link.channel->channelBand));
  if (link.widthMegahertz) text += ", " + std::to_string(*link.widthMegahertz) + " MHz";
  text += ")";
  if (link.frequencyMegahertz) text += ", " + std::to_string(*link.frequencyMegahertz) + " MHz";
  return text;
}

}  // namespace lanternfold
