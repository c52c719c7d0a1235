#include "PlatformLinux/Wifi/WifiChannelMapping.h"

#include <array>
#include <cmath>

#include <linux/nl80211.h>

namespace lanternfold {

namespace {

/// A range of centre frequencies and how its channels are counted.
struct ChannelPlan {
  std::uint32_t first;  // MHz
  std::uint32_t last;
  std::uint32_t origin;   // where channel 0 would be
  std::uint32_t spacing;  // MHz from one number to the next; 0 for a range of one channel
  std::uint32_t onlyChannel;
  WifiChannelBand band;
};

// Channel 14 stands apart from its band, and channel 2 of the 6 GHz band below the band's origin.
constexpr std::array<ChannelPlan, 7> plans = {{
    {2412, 2472, 2407, 5, 0, WifiChannelBand::band2GHz},
    {2484, 2484, 0, 0, 14, WifiChannelBand::band2GHz},
    {4910, 4980, 4000, 5, 0, WifiChannelBand::band5GHz},
    {5005, 5924, 5000, 5, 0, WifiChannelBand::band5GHz},
    {5935, 5935, 0, 0, 2, WifiChannelBand::band6GHz},
    {5955, 7125, 5950, 5, 0, WifiChannelBand::band6GHz},
    {58320, 70200, 56160, 2160, 0, WifiChannelBand::unknown},
}};

const ChannelPlan* planOf(std::uint32_t megahertz) {
  for (const ChannelPlan& plan : plans) {
    if (megahertz >= plan.first && megahertz <= plan.last) return &plan;
  }
  return nullptr;
}

struct Width {
  std::uint32_t width;
  std::uint32_t megahertz;
};

constexpr std::array<Width, 14> widths = {{
    {NL80211_CHAN_WIDTH_20_NOHT, 20},
    {NL80211_CHAN_WIDTH_20, 20},
    {NL80211_CHAN_WIDTH_40, 40},
    {NL80211_CHAN_WIDTH_80, 80},
    {NL80211_CHAN_WIDTH_80P80, 160},
    {NL80211_CHAN_WIDTH_160, 160},
    {NL80211_CHAN_WIDTH_320, 320},
    {NL80211_CHAN_WIDTH_5, 5},
    {NL80211_CHAN_WIDTH_10, 10},
    {NL80211_CHAN_WIDTH_1, 1},
    {NL80211_CHAN_WIDTH_2, 2},
    {NL80211_CHAN_WIDTH_4, 4},
    {NL80211_CHAN_WIDTH_8, 8},
    {NL80211_CHAN_WIDTH_16, 16},
}};

constexpr std::int32_t highestMillibels = 10'000;

}  // namespace

WifiChannelBand bandOfFrequency(std::uint32_t megahertz) {
  const ChannelPlan* plan = planOf(megahertz);
  return plan == nullptr ? WifiChannelBand::unknown : plan->band;
}

std::int64_t channelNumberOfFrequency(std::uint32_t megahertz) {
  const ChannelPlan* plan = planOf(megahertz);
  if (plan == nullptr) return 0;
  return plan->spacing == 0 ? plan->onlyChannel : (megahertz - plan->origin) / plan->spacing;
}

std::optional<std::uint32_t> megahertzOfWidth(std::uint32_t width) {
  for (const Width& each : widths) {
    if (each.width == width) return each.megahertz;
  }
  return std::nullopt;
}

WifiChannelWidth widthOfMegahertz(std::uint32_t megahertz) {
  switch (megahertz) {
    case 20:
      return WifiChannelWidth::width20MHz;
    case 40:
      return WifiChannelWidth::width40MHz;
    case 80:
      return WifiChannelWidth::width80MHz;
    case 160:
      return WifiChannelWidth::width160MHz;
    case 320:
      return WifiChannelWidth::width320MHz;
    default:
      return WifiChannelWidth::unknown;
  }
}

std::int64_t milliwattsOfMillibels(std::optional<std::int32_t> millibels) {
  if (!millibels || *millibels > highestMillibels || *millibels < -highestMillibels) return 0;
  return std::llround(std::pow(10.0, *millibels / 1000.0));
}

}  // namespace lanternfold
