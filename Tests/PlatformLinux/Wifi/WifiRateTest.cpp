#include "PlatformLinux/Wifi/WifiRate.h"
#include "Tests/PlatformLinux/Wifi/WifiFrames.h"

namespace lanternfold::test {
namespace {

using enum WifiGeneration;

TEST(WifiRate, TheWideBitrateComesBeforeTheNarrowOne) {
  const Bytes both = joined(
      {number16(NL80211_RATE_INFO_BITRATE, 10), number32(NL80211_RATE_INFO_BITRATE32, 57'600)});
  EXPECT_EQ(decodeWifiRate(both)->bitrate, 57'600U);
  EXPECT_DOUBLE_EQ(decodeWifiRate(both)->megabits(), 5760.0);
  const Bytes narrow = number16(NL80211_RATE_INFO_BITRATE, 65535);
  EXPECT_DOUBLE_EQ(decodeWifiRate(narrow)->megabits(), 6553.5);
  EXPECT_EQ(decodeWifiRate({})->bitrate, std::nullopt);
  EXPECT_DOUBLE_EQ(decodeWifiRate({})->megabits(), 0.0);
}

TEST(WifiRate, TellsGenerationModulationStreamsAndGuardInterval) {
  const std::pair<Bytes, WifiRate> cases[] = {
      {{}, {}},
      {number8(NL80211_RATE_INFO_MCS, 15),
       {.generation = ht, .modulation = 15, .streams = 2, .guardIntervalNanoseconds = 800}},
      {joined({number8(NL80211_RATE_INFO_MCS, 7), flag(NL80211_RATE_INFO_SHORT_GI)}),
       {.generation = ht, .modulation = 7, .streams = 1, .guardIntervalNanoseconds = 400}},
      {number8(NL80211_RATE_INFO_MCS, 32),
       {.generation = ht, .modulation = 32, .streams = 1, .guardIntervalNanoseconds = 800}},
      {joined({number8(NL80211_RATE_INFO_VHT_MCS, 9), number8(NL80211_RATE_INFO_VHT_NSS, 3)}),
       {.generation = vht, .modulation = 9, .streams = 3, .guardIntervalNanoseconds = 800}},
      {joined({number8(NL80211_RATE_INFO_HE_MCS, 11), number8(NL80211_RATE_INFO_HE_NSS, 2),
               number8(NL80211_RATE_INFO_HE_GI, 2)}),
       {.generation = he, .modulation = 11, .streams = 2, .guardIntervalNanoseconds = 3200}},
      {joined({number8(NL80211_RATE_INFO_EHT_MCS, 13), number8(NL80211_RATE_INFO_EHT_NSS, 4),
               number8(NL80211_RATE_INFO_EHT_GI, 0)}),
       {.generation = eht, .modulation = 13, .streams = 4, .guardIntervalNanoseconds = 800}},
      {joined({number8(NL80211_RATE_INFO_EHT_MCS, 1), number8(NL80211_RATE_INFO_EHT_GI, 9)}),
       {.generation = eht, .modulation = 1}},
  };
  for (const auto& [bytes, rate] : cases) EXPECT_EQ(decodeWifiRate(bytes).value(), rate);
}

TEST(WifiRate, OfSeveralGenerationsTheLatestCounts) {
  const Bytes bytes =
      joined({number8(NL80211_RATE_INFO_MCS, 1), number8(NL80211_RATE_INFO_HE_MCS, 2)});
  EXPECT_EQ(decodeWifiRate(bytes)->generation, he);
}

TEST(WifiRate, TellsTheWidthByItsFlag) {
  const std::pair<int, std::uint32_t> cases[] = {
      {NL80211_RATE_INFO_5_MHZ_WIDTH, 5},       {NL80211_RATE_INFO_10_MHZ_WIDTH, 10},
      {NL80211_RATE_INFO_40_MHZ_WIDTH, 40},     {NL80211_RATE_INFO_80_MHZ_WIDTH, 80},
      {NL80211_RATE_INFO_80P80_MHZ_WIDTH, 160}, {NL80211_RATE_INFO_160_MHZ_WIDTH, 160},
      {NL80211_RATE_INFO_320_MHZ_WIDTH, 320}};
  for (const auto& [type, megahertz] : cases) {
    EXPECT_EQ(decodeWifiRate(flag(type))->widthMegahertz, megahertz);
  }
  EXPECT_EQ(decodeWifiRate({})->widthMegahertz, 20U);
}

TEST(WifiRate, WhatIsWrongIsNamed) {
  using enum DecodeProblem;
  const std::pair<Bytes, DecodeError> cases[] = {
      {number8(NL80211_RATE_INFO_BITRATE32, 1), {wrongSize, "NL80211_RATE_INFO_BITRATE32"}},
      {number16(NL80211_RATE_INFO_VHT_MCS, 1), {wrongSize, "NL80211_RATE_INFO_VHT_MCS"}},
      {joined({number8(NL80211_RATE_INFO_MCS, 1), number8(NL80211_RATE_INFO_MCS, 1)}),
       {duplicate, "NL80211_RATE_INFO_MCS"}},
      {{4, 0, 1}, {truncated, "nlattr"}},
      {{3, 0, 1, 0}, {badLength, "nlattr"}},
      {{0, 0, 0, 0}, {badLength, "nlattr"}},
  };
  for (const auto& [bytes, error] : cases) EXPECT_EQ(decodeWifiRate(bytes).error(), error);
}

}  // namespace
}  // namespace lanternfold::test
