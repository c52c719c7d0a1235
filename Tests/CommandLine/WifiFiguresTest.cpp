#include <gtest/gtest.h>

#include "CommandLine/WifiFigures.h"
#include "Tests/Support/FakeStringTable.h"

namespace lanternfold {
namespace {

TEST(WifiFigures, NumbersAreAsShortAsTheyGo) {
  EXPECT_EQ(megabitsText(866.7), "866.7 Mbit/s");
  EXPECT_EQ(megabitsText(1300), "1300 Mbit/s");
  EXPECT_EQ(megabitsText(46'100.5), "46100.5 Mbit/s");
  EXPECT_EQ(decibelsText(-54), "-54 dBm");
  EXPECT_EQ(powerText(1750, 56), "17.5 dBm (56 mW)");
  EXPECT_EQ(powerText(-500, 0), "-5 dBm (0 mW)");
}

TEST(WifiFigures, DurationsHaveTheirTwoLargestUnits) {
  EXPECT_EQ(durationText(0), "0 s");
  EXPECT_EQ(durationText(59), "59 s");
  EXPECT_EQ(durationText(60), "1 min 0 s");
  EXPECT_EQ(durationText(3599), "59 min 59 s");
  EXPECT_EQ(durationText(3600), "1 h 0 min");
  EXPECT_EQ(durationText(UINT32_MAX), "1193046 h 28 min");
}

TEST(WifiFigures, EveryGenerationHasAName) {
  EXPECT_EQ(generationText(WifiGeneration::legacy), "802.11a, b or g");
  EXPECT_EQ(generationText(WifiGeneration::ht), "802.11n (Wi-Fi 4)");
  EXPECT_EQ(generationText(WifiGeneration::vht), "802.11ac (Wi-Fi 5)");
  EXPECT_EQ(generationText(WifiGeneration::he), "802.11ax (Wi-Fi 6)");
  EXPECT_EQ(generationText(WifiGeneration::eht), "802.11be (Wi-Fi 7)");
}

TEST(WifiFigures, ARateTellsWhatIsKnownOfIt) {
  EXPECT_EQ(rateText({.bitrate = 540}), "54 Mbit/s (20 MHz)");
  EXPECT_EQ(rateText({.bitrate = std::nullopt,
                      .generation = WifiGeneration::he,
                      .modulation = std::uint8_t{11},
                      .streams = std::uint8_t{1},
                      .widthMegahertz = 160,
                      .guardIntervalNanoseconds = 3200}),
            "MCS 11, 1 stream, 160 MHz, guard interval 3200 ns");
}

TEST(WifiFigures, ProtectionsThatTheWidgetsDoNotKnowHaveAText) {
  const FakeStringTable strings;
  EXPECT_EQ(protectionText(WifiSecurity::none, strings), "None");
  EXPECT_EQ(protectionText(WifiSecurity::wpa3Transition, strings), "WPA 3 Transition");
  EXPECT_EQ(protectionText(WifiSecurity::owe, strings), "Enhanced Open");
  EXPECT_EQ(protectionText(WifiSecurity::oweTransition, strings), "Enhanced Open, or none");
  EXPECT_EQ(protectionText(WifiSecurity::unknown, strings), "");
}

TEST(WifiFigures, SuitesTellOfTheProtectionOfManagementFrames) {
  WifiProtection protection{.authentications = {"SAE", "PSK"},
                            .pairwiseCiphers = {"CCMP-128", "TKIP"},
                            .groupCipher = "TKIP"};
  EXPECT_EQ(suitesText(protection), "SAE, PSK; CCMP-128, TKIP, group TKIP");
  protection.offersManagementProtection = true;
  EXPECT_EQ(suitesText(protection),
            "SAE, PSK; CCMP-128, TKIP, group TKIP; management frames protected if the client can");
}

TEST(WifiFigures, AChannelNamesItsBandAndItsWidth) {
  WifiLink link;
  EXPECT_EQ(linkChannelText(link), "");
  link.channel = WifiChannel{.channelNumber = 37, .channelBand = WifiChannelBand::band6GHz};
  EXPECT_EQ(linkChannelText(link), "37 (6 GHz)");
  link.widthMegahertz = 320;
  link.frequencyMegahertz = 6135;
  EXPECT_EQ(linkChannelText(link), "37 (6 GHz, 320 MHz), 6135 MHz");
  link.channel->channelBand = WifiChannelBand::unknown;
  EXPECT_EQ(linkChannelText(link), "37 (another band, 320 MHz), 6135 MHz");
}

}  // namespace
}  // namespace lanternfold
