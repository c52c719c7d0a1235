#include <gtest/gtest.h>
#include <linux/nl80211.h>

#include "PlatformLinux/Wifi/WifiChannelMapping.h"

namespace lanternfold {
namespace {

TEST(WifiChannelMapping, CountsChannelsAsTheKernelDoes) {
  using enum WifiChannelBand;
  struct Case {
    std::uint32_t megahertz;
    std::int64_t number;
    WifiChannelBand band;
  };
  const Case cases[] = {
      {2412, 1, band2GHz},   {2437, 6, band2GHz},   {2472, 13, band2GHz},     {2484, 14, band2GHz},
      {4920, 184, band5GHz}, {4980, 196, band5GHz}, {5180, 36, band5GHz},     {5220, 44, band5GHz},
      {5500, 100, band5GHz}, {5825, 165, band5GHz}, {5885, 177, band5GHz},    {5935, 2, band6GHz},
      {5955, 1, band6GHz},   {6135, 37, band6GHz},  {7115, 233, band6GHz},    {58320, 1, unknown},
      {64800, 4, unknown},   {0, 0, unknown},       {2400, 0, unknown},       {902, 0, unknown},
      {3000, 0, unknown},    {45000, 0, unknown},   {UINT32_MAX, 0, unknown},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(channelNumberOfFrequency(each.megahertz), each.number) << each.megahertz;
    EXPECT_EQ(bandOfFrequency(each.megahertz), each.band) << each.megahertz;
  }
}

TEST(WifiChannelMapping, MapsEveryWidth) {
  using enum WifiChannelWidth;
  const std::pair<std::uint32_t, WifiChannelWidth> cases[] = {
      {NL80211_CHAN_WIDTH_20_NOHT, width20MHz}, {NL80211_CHAN_WIDTH_20, width20MHz},
      {NL80211_CHAN_WIDTH_40, width40MHz},      {NL80211_CHAN_WIDTH_80, width80MHz},
      {NL80211_CHAN_WIDTH_80P80, width160MHz},  {NL80211_CHAN_WIDTH_160, width160MHz},
      {NL80211_CHAN_WIDTH_320, width320MHz},    {NL80211_CHAN_WIDTH_5, unknown},
      {NL80211_CHAN_WIDTH_10, unknown},         {NL80211_CHAN_WIDTH_1, unknown},
      {NL80211_CHAN_WIDTH_2, unknown},          {NL80211_CHAN_WIDTH_4, unknown},
      {NL80211_CHAN_WIDTH_8, unknown},          {NL80211_CHAN_WIDTH_16, unknown}};
  for (const auto& [width, expected] : cases) {
    EXPECT_EQ(widthOfMegahertz(megahertzOfWidth(width).value()), expected) << width;
  }
  EXPECT_EQ(megahertzOfWidth(14), std::nullopt);
  EXPECT_EQ(megahertzOfWidth(UINT32_MAX), std::nullopt);
}

TEST(WifiChannelMapping, MapsPowerToMilliwatts) {
  const std::pair<std::optional<std::int32_t>, std::int64_t> cases[] = {{std::nullopt, 0},
                                                                        {0, 1},
                                                                        {300, 2},
                                                                        {1000, 10},
                                                                        {1500, 32},
                                                                        {2000, 100},
                                                                        {2300, 200},
                                                                        {3000, 1000},
                                                                        {-1000, 0},
                                                                        {INT32_MAX, 0},
                                                                        {INT32_MIN, 0},
                                                                        {10'001, 0},
                                                                        {10'000, 10'000'000'000}};
  for (const auto& [millibels, milliwatts] : cases) {
    EXPECT_EQ(milliwattsOfMillibels(millibels), milliwatts) << millibels.value_or(0);
  }
}

}  // namespace
}  // namespace lanternfold
