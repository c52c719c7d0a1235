#include "PlatformLinux/Wifi/WifiRate.h"

#include <array>

#include <linux/nl80211.h>

#include "PlatformLinux/Netlink/AttributeTable.h"

namespace lanternfold {

namespace {

constexpr AttributeTable rateTable(std::array{
    numberAttribute<std::uint16_t>(NL80211_RATE_INFO_BITRATE, "NL80211_RATE_INFO_BITRATE"),
    numberAttribute<std::uint32_t>(NL80211_RATE_INFO_BITRATE32, "NL80211_RATE_INFO_BITRATE32"),
    numberAttribute<std::uint8_t>(NL80211_RATE_INFO_MCS, "NL80211_RATE_INFO_MCS"),
    numberAttribute<std::uint8_t>(NL80211_RATE_INFO_VHT_MCS, "NL80211_RATE_INFO_VHT_MCS"),
    numberAttribute<std::uint8_t>(NL80211_RATE_INFO_VHT_NSS, "NL80211_RATE_INFO_VHT_NSS"),
    numberAttribute<std::uint8_t>(NL80211_RATE_INFO_HE_MCS, "NL80211_RATE_INFO_HE_MCS"),
    numberAttribute<std::uint8_t>(NL80211_RATE_INFO_HE_NSS, "NL80211_RATE_INFO_HE_NSS"),
    numberAttribute<std::uint8_t>(NL80211_RATE_INFO_HE_GI, "NL80211_RATE_INFO_HE_GI"),
    numberAttribute<std::uint8_t>(NL80211_RATE_INFO_EHT_MCS, "NL80211_RATE_INFO_EHT_MCS"),
    numberAttribute<std::uint8_t>(NL80211_RATE_INFO_EHT_NSS, "NL80211_RATE_INFO_EHT_NSS"),
    numberAttribute<std::uint8_t>(NL80211_RATE_INFO_EHT_GI, "NL80211_RATE_INFO_EHT_GI"),
    flagAttribute(NL80211_RATE_INFO_SHORT_GI, "NL80211_RATE_INFO_SHORT_GI"),
    flagAttribute(NL80211_RATE_INFO_5_MHZ_WIDTH, "NL80211_RATE_INFO_5_MHZ_WIDTH"),
    flagAttribute(NL80211_RATE_INFO_10_MHZ_WIDTH, "NL80211_RATE_INFO_10_MHZ_WIDTH"),
    flagAttribute(NL80211_RATE_INFO_40_MHZ_WIDTH, "NL80211_RATE_INFO_40_MHZ_WIDTH"),
    flagAttribute(NL80211_RATE_INFO_80_MHZ_WIDTH, "NL80211_RATE_INFO_80_MHZ_WIDTH"),
    flagAttribute(NL80211_RATE_INFO_80P80_MHZ_WIDTH, "NL80211_RATE_INFO_80P80_MHZ_WIDTH"),
    flagAttribute(NL80211_RATE_INFO_160_MHZ_WIDTH, "NL80211_RATE_INFO_160_MHZ_WIDTH"),
    flagAttribute(NL80211_RATE_INFO_320_MHZ_WIDTH, "NL80211_RATE_INFO_320_MHZ_WIDTH"),
});

using RateAttributes = decltype(rateTable)::Attributes;

struct WidthFlag {
  std::uint16_t attribute;
  std::uint32_t megahertz;
};

// The first one that is there decides; 20 MHz has none.
constexpr std::array<WidthFlag, 7> widthFlags = {{
    {NL80211_RATE_INFO_320_MHZ_WIDTH, 320},
    {NL80211_RATE_INFO_160_MHZ_WIDTH, 160},
    {NL80211_RATE_INFO_80P80_MHZ_WIDTH, 160},
    {NL80211_RATE_INFO_80_MHZ_WIDTH, 80},
    {NL80211_RATE_INFO_40_MHZ_WIDTH, 40},
    {NL80211_RATE_INFO_10_MHZ_WIDTH, 10},
    {NL80211_RATE_INFO_5_MHZ_WIDTH, 5},
}};

struct GenerationAttributes {
  WifiGeneration generation;
  std::uint16_t modulation;
  std::uint16_t streams;        // 0: none, the streams follow from the modulation
  std::uint16_t guardInterval;  // 0: NL80211_RATE_INFO_SHORT_GI alone
};

constexpr std::array<GenerationAttributes, 4> generations = {{
    {WifiGeneration::eht, NL80211_RATE_INFO_EHT_MCS, NL80211_RATE_INFO_EHT_NSS,
     NL80211_RATE_INFO_EHT_GI},
    {WifiGeneration::he, NL80211_RATE_INFO_HE_MCS, NL80211_RATE_INFO_HE_NSS,
     NL80211_RATE_INFO_HE_GI},
    {WifiGeneration::vht, NL80211_RATE_INFO_VHT_MCS, NL80211_RATE_INFO_VHT_NSS, 0},
    {WifiGeneration::ht, NL80211_RATE_INFO_MCS, 0, 0},
}};

// Eight indexes for each number of streams. 32 is the duplicate of the most robust one.
std::uint8_t streamsOfHt(std::uint8_t modulation) {
  return modulation < 32 ? static_cast<std::uint8_t>(modulation / 8 + 1) : std::uint8_t{1};
}

std::optional<std::uint32_t> guardIntervalOf(const RateAttributes& attributes, std::uint16_t type) {
  if (type == 0) return attributes.has(NL80211_RATE_INFO_SHORT_GI) ? 400 : 800;
  const auto value = attributes.number<std::uint8_t>(type);
  if (!value || *value > NL80211_RATE_INFO_HE_GI_3_2) return std::nullopt;
  return std::uint32_t{800} << *value;
}

void readGeneration(const RateAttributes& attributes, WifiRate& rate) {
  for (const GenerationAttributes& each : generations) {
    const auto modulation = attributes.number<std::uint8_t>(each.modulation);
    if (!modulation) continue;
    rate.generation = each.generation;
    rate.modulation = modulation;
    rate.streams = each.streams == 0 ? streamsOfHt(*modulation)
                                     : attributes.number<std::uint8_t>(each.streams);
    rate.guardIntervalNanoseconds = guardIntervalOf(attributes, each.guardInterval);
    return;
  }
}

// The 16-bit form stands beside the other one for old readers, and is left out when it is too
// small.
std::optional<std::uint32_t> bitrateOf(const RateAttributes& attributes) {
  const auto wide = attributes.number<std::uint32_t>(NL80211_RATE_INFO_BITRATE32);
  if (wide) return wide;
  return attributes.number<std::uint16_t>(NL80211_RATE_INFO_BITRATE);
}

}  // namespace

std::expected<WifiRate, DecodeError> decodeWifiRate(std::span<const std::uint8_t> bytes) {
  const auto attributes = rateTable.parse(bytes);
  if (!attributes) return std::unexpected(attributes.error());
  WifiRate rate;
  rate.bitrate = bitrateOf(*attributes);
  for (const WidthFlag& flag : widthFlags) {
    if (!attributes->has(flag.attribute)) continue;
    rate.widthMegahertz = flag.megahertz;
    break;
  }
  readGeneration(*attributes, rate);
  return rate;
}

}  // namespace lanternfold
