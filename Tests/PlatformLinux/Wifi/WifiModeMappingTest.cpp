#include <gtest/gtest.h>
#include <linux/nl80211.h>

#include "PlatformLinux/Wifi/WifiModeMapping.h"

namespace lanternfold {
namespace {

TEST(WifiModeMapping, MapsEveryInterfaceType) {
  using enum WifiInterfaceMode;
  const std::pair<std::uint32_t, WifiInterfaceMode> cases[] = {
      {NL80211_IFTYPE_UNSPECIFIED, none},   {NL80211_IFTYPE_ADHOC, ibss},
      {NL80211_IFTYPE_STATION, station},    {NL80211_IFTYPE_AP, hostAP},
      {NL80211_IFTYPE_AP_VLAN, hostAP},     {NL80211_IFTYPE_WDS, otherWifiInterfaceMode},
      {NL80211_IFTYPE_MONITOR, none},       {NL80211_IFTYPE_MESH_POINT, otherWifiInterfaceMode},
      {NL80211_IFTYPE_P2P_CLIENT, station}, {NL80211_IFTYPE_P2P_GO, hostAP},
      {NL80211_IFTYPE_P2P_DEVICE, none},    {NL80211_IFTYPE_OCB, otherWifiInterfaceMode},
      {NL80211_IFTYPE_NAN, none},           {99, otherWifiInterfaceMode}};
  for (const auto& [type, mode] : cases) EXPECT_EQ(modeOfInterfaceType(type), mode) << type;
}

TEST(WifiModeMapping, MapsEveryGenerationAndTellsTheFirstOnesByBandAndRates) {
  using enum WifiChannelBand;
  struct Case {
    WifiGeneration generation;
    WifiChannelBand band;
    bool onlyOldestRates;
    WifiPhyMode mode;
  };
  const Case cases[] = {{WifiGeneration::legacy, band2GHz, true, WifiPhyMode::mode11b},
                        {WifiGeneration::legacy, band2GHz, false, WifiPhyMode::mode11g},
                        {WifiGeneration::legacy, band5GHz, false, WifiPhyMode::mode11a},
                        {WifiGeneration::legacy, band5GHz, true, WifiPhyMode::mode11a},
                        {WifiGeneration::legacy, band6GHz, false, WifiPhyMode::mode11ax},
                        {WifiGeneration::legacy, unknown, false, WifiPhyMode::none},
                        {WifiGeneration::ht, band2GHz, true, WifiPhyMode::mode11n},
                        {WifiGeneration::ht, band5GHz, false, WifiPhyMode::mode11n},
                        {WifiGeneration::vht, band5GHz, false, WifiPhyMode::mode11ac},
                        {WifiGeneration::he, band6GHz, false, WifiPhyMode::mode11ax},
                        {WifiGeneration::eht, unknown, false, WifiPhyMode::mode11be}};
  for (const Case& each : cases) {
    EXPECT_EQ(phyModeOf(each.generation, each.band, each.onlyOldestRates), each.mode);
  }
}

WifiRate rateOf(WifiGeneration generation) {
  WifiRate rate;
  rate.generation = generation;
  return rate;
}

TEST(WifiModeMapping, TheRatesDecideTheGenerationBeforeTheAnnouncement) {
  using enum WifiGeneration;
  InformationElements announcesEht;
  announcesEht.generation = eht;
  const std::optional<std::uint32_t> narrow = NL80211_CHAN_WIDTH_20_NOHT;
  const std::optional<std::uint32_t> wide = NL80211_CHAN_WIDTH_80;
  struct Case {
    WifiGenerationEvidence evidence;
    WifiGeneration generation;
  };
  const Case cases[] = {{{std::nullopt, std::nullopt, std::nullopt, nullptr}, legacy},
                        {{rateOf(vht), std::nullopt, wide, &announcesEht}, vht},
                        {{rateOf(legacy), rateOf(he), wide, &announcesEht}, he},
                        {{rateOf(vht), rateOf(ht), wide, nullptr}, vht},
                        {{rateOf(legacy), rateOf(legacy), wide, &announcesEht}, eht},
                        {{rateOf(legacy), rateOf(legacy), wide, nullptr}, legacy},
                        {{rateOf(legacy), std::nullopt, narrow, &announcesEht}, legacy},
                        {{std::nullopt, std::nullopt, std::nullopt, &announcesEht}, eht}};
  for (const Case& each : cases) EXPECT_EQ(generationInUse(each.evidence), each.generation);
}

}  // namespace
}  // namespace lanternfold
