#include "NetworkMonitor/Wlan/WlanTexts.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "Support/Localizable.h"

namespace lanternfold {
namespace {

enum class Wording { fixed, localised };

template <typename Value>
struct Row {
  Value value;
  std::string_view text;
  Wording wording = Wording::fixed;
};

constexpr auto interfaceModeTexts = std::to_array<Row<WifiInterfaceMode>>({
    {WifiInterfaceMode::none, localizable("None"), Wording::localised},
    {WifiInterfaceMode::station, localizable("Station"), Wording::localised},
    {WifiInterfaceMode::ibss, localizable("IBSS"), Wording::localised},
    {WifiInterfaceMode::hostAP, localizable("Host AP"), Wording::localised},
});

// Intended: later modes have no text.
constexpr auto phyModeTexts = std::to_array<Row<WifiPhyMode>>({
    {WifiPhyMode::mode11a, "802.11a"},
    {WifiPhyMode::mode11b, "802.11b"},
    {WifiPhyMode::mode11g, "802.11g"},
    {WifiPhyMode::mode11n, "802.11n"},
    {WifiPhyMode::mode11ac, "802.11ac"},
});

// Intended: the two modes of opportunistic encryption have no text.
constexpr auto securityTexts = std::to_array<Row<WifiSecurity>>({
    {WifiSecurity::none, localizable("None"), Wording::localised},
    {WifiSecurity::wep, "WEP"},
    {WifiSecurity::wpaPersonal, "WPA Personal"},
    {WifiSecurity::wpaPersonalMixed, "WPA Personal Mixed"},
    {WifiSecurity::wpa2Personal, "WPA 2 Personal"},
    {WifiSecurity::personal, "Personal"},
    {WifiSecurity::dynamicWep, "Dynamic WEP"},
    {WifiSecurity::wpaEnterprise, "WPA Enterprise"},
    {WifiSecurity::wpaEnterpriseMixed, "WPA Enterprise Mixed"},
    {WifiSecurity::wpa2Enterprise, "WPA 2 Enterprise"},
    {WifiSecurity::enterprise, "Enterprise"},
    {WifiSecurity::wpa3Personal, "WPA 3 Personal"},
    {WifiSecurity::wpa3Enterprise, "WPA 3 Enterprise"},
    {WifiSecurity::wpa3Transition, "WPA 3 Transition"},
});

// Intended: the band of 6 GHz has no text.
constexpr auto channelBandTexts = std::to_array<Row<WifiChannelBand>>({
    {WifiChannelBand::band2GHz, "2.4GHz"},
    {WifiChannelBand::band5GHz, "5GHz"},
});

// Intended: channels of 320 MHz have no text.
constexpr auto channelWidthTexts = std::to_array<Row<WifiChannelWidth>>({
    {WifiChannelWidth::width20MHz, "20MHz"},
    {WifiChannelWidth::width40MHz, "40MHz"},
    {WifiChannelWidth::width80MHz, "80MHz"},
    {WifiChannelWidth::width160MHz, "160MHz"},
});

template <typename Table, typename Value>
std::string textOf(const Table& table, Value value, const StringTable& strings) {
  const auto row = std::ranges::find(table, value, &Row<Value>::value);
  if (row == table.end()) return notAvailableText(strings);
  return row->wording == Wording::localised ? strings.localized(row->text) : std::string(row->text);
}

}  // namespace

std::string interfaceModeText(WifiInterfaceMode mode, const StringTable& strings) {
  return textOf(interfaceModeTexts, mode, strings);
}

std::string phyModeText(WifiPhyMode mode, const StringTable& strings) {
  return textOf(phyModeTexts, mode, strings);
}

std::string securityText(WifiSecurity security, const StringTable& strings) {
  return textOf(securityTexts, security, strings);
}

std::string channelText(const std::optional<WifiChannel>& channel, const StringTable& strings) {
  if (!channel) return notAvailableText(strings);
  return std::to_string(channel->channelNumber) + " (" +
         textOf(channelBandTexts, channel->channelBand, strings) + ", " +
         textOf(channelWidthTexts, channel->channelWidth, strings) + ")";
}

std::string notAvailableText(const StringTable& strings) { return strings.localized("N/A"); }

}  // namespace lanternfold
