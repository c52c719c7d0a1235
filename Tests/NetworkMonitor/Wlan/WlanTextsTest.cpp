#include <array>
#include <cstdint>
#include <limits>
#include <string_view>

#include <gtest/gtest.h>

#include "NetworkMonitor/Wlan/WlanTexts.h"
#include "Tests/Support/BracketingStringTable.h"
#include "Tests/Support/FakeStringTable.h"

namespace lanternfold {
namespace {

// In every table the values stand as the numbers that the system uses, and what was looked up in
// the string table stands between guillemets.
using Expected = std::pair<std::int64_t, std::string_view>;

template <typename Value>
using TextFunction = std::string (*)(Value, const StringTable&);

template <typename Value, std::size_t count>
void expectTexts(TextFunction<Value> text, const Expected (&table)[count]) {
  const BracketingStringTable strings;
  for (const auto& [value, expected] : table) {
    EXPECT_EQ(text(static_cast<Value>(value), strings), expected) << "value " << value;
  }
}

template <typename Value>
void expectNotAvailable(TextFunction<Value> text, std::initializer_list<std::int64_t> values) {
  const BracketingStringTable strings;
  for (const std::int64_t value : values) {
    EXPECT_EQ(text(static_cast<Value>(value), strings), "«N/A»") << "value " << value;
  }
}

constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t greatest = std::numeric_limits<std::int64_t>::max();

std::string channelText(std::int64_t number, std::int64_t band, std::int64_t width) {
  return lanternfold::channelText(WifiChannel{.channelNumber = number,
                                              .channelBand = static_cast<WifiChannelBand>(band),
                                              .channelWidth = static_cast<WifiChannelWidth>(width)},
                                  BracketingStringTable());
}

TEST(WlanTextsTest, InterfaceModes) {
  expectTexts(interfaceModeText,
              {{0, "«None»"}, {1, "«Station»"}, {2, "«IBSS»"}, {3, "«Host AP»"}});
}

TEST(WlanTextsTest, InterfaceModesBeyondTheTable) {
  expectNotAvailable(interfaceModeText, {-1, 4, 5, 100, least, greatest});
}

TEST(WlanTextsTest, PhyModes) {
  expectTexts(phyModeText,
              {{1, "802.11a"}, {2, "802.11b"}, {3, "802.11g"}, {4, "802.11n"}, {5, "802.11ac"}});
}

TEST(WlanTextsTest, NoPhyModeAndLaterOnesAreNotAvailable) {
  expectNotAvailable(phyModeText, {0, 6, 7});
  EXPECT_EQ(phyModeText(WifiPhyMode::mode11ax, FakeStringTable()), "N/A");
  EXPECT_EQ(phyModeText(WifiPhyMode::mode11be, FakeStringTable()), "N/A");
}

TEST(WlanTextsTest, PhyModesBeyondTheTable) {
  expectNotAvailable(phyModeText, {-1, 8, 100, least, greatest});
}

TEST(WlanTextsTest, Securities) {
  expectTexts(securityText, {{0, "«None»"},
                             {1, "WEP"},
                             {2, "WPA Personal"},
                             {3, "WPA Personal Mixed"},
                             {4, "WPA 2 Personal"},
                             {5, "Personal"},
                             {6, "Dynamic WEP"},
                             {7, "WPA Enterprise"},
                             {8, "WPA Enterprise Mixed"},
                             {9, "WPA 2 Enterprise"},
                             {10, "Enterprise"},
                             {11, "WPA 3 Personal"},
                             {12, "WPA 3 Enterprise"},
                             {13, "WPA 3 Transition"}});
}

TEST(WlanTextsTest, SecurityOf14Or15IsNotAvailable) {
  expectNotAvailable(securityText, {14, 15});
  EXPECT_EQ(securityText(WifiSecurity::owe, FakeStringTable()), "N/A");
  EXPECT_EQ(securityText(WifiSecurity::oweTransition, FakeStringTable()), "N/A");
}

TEST(WlanTextsTest, SecurityOf4HasASpaceBeforeThe2) {
  EXPECT_EQ(securityText(WifiSecurity::wpa2Personal, FakeStringTable()), "WPA 2 Personal");
}

TEST(WlanTextsTest, SecuritiesBeyondTheTable) {
  expectNotAvailable(securityText, {-1, 16, 100, least, greatest});
  EXPECT_EQ(securityText(WifiSecurity::unknown, FakeStringTable()), "N/A");
}

TEST(WlanTextsTest, ChannelOf44On5GHzWith80MHz) {
  EXPECT_EQ(channelText(44, 2, 3), "44 (5GHz, 80MHz)");
}

TEST(WlanTextsTest, WithoutAChannelThereAreNoParentheses) {
  EXPECT_EQ(lanternfold::channelText(std::nullopt, BracketingStringTable()), "«N/A»");
}

TEST(WlanTextsTest, ChannelBands) {
  EXPECT_EQ(channelText(1, 1, 1), "1 (2.4GHz, 20MHz)");
  EXPECT_EQ(channelText(1, 2, 1), "1 (5GHz, 20MHz)");
}

TEST(WlanTextsTest, ChannelBandsBeyondTheTable) {
  for (const std::int64_t band :
       {std::int64_t{-1}, std::int64_t{0}, std::int64_t{3}, std::int64_t{4}, least, greatest}) {
    EXPECT_EQ(channelText(1, band, 1), "1 («N/A», 20MHz)") << band;
  }
}

TEST(WlanTextsTest, ChannelOn6GHz) { EXPECT_EQ(channelText(37, 3, 4), "37 («N/A», 160MHz)"); }

TEST(WlanTextsTest, ChannelWidths) {
  EXPECT_EQ(channelText(36, 2, 1), "36 (5GHz, 20MHz)");
  EXPECT_EQ(channelText(36, 2, 2), "36 (5GHz, 40MHz)");
  EXPECT_EQ(channelText(36, 2, 3), "36 (5GHz, 80MHz)");
  EXPECT_EQ(channelText(36, 2, 4), "36 (5GHz, 160MHz)");
}

TEST(WlanTextsTest, ChannelWidthsBeyondTheTable) {
  for (const std::int64_t width :
       {std::int64_t{-1}, std::int64_t{0}, std::int64_t{5}, std::int64_t{6}, least, greatest}) {
    EXPECT_EQ(channelText(36, 2, width), "36 (5GHz, «N/A»)") << width;
  }
}

TEST(WlanTextsTest, AChannelOfWhichOnlyTheNumberIsKnown) {
  EXPECT_EQ(channelText(0, 0, 0), "0 («N/A», «N/A»)");
  EXPECT_EQ(channelText(-7, 0, 0), "-7 («N/A», «N/A»)");
  EXPECT_EQ(channelText(greatest, 0, 0), "9223372036854775807 («N/A», «N/A»)");
}

TEST(WlanTextsTest, ComeFromTheStringTable) {
  const FakeStringTable strings(
      {{"Station", "Infrastruttura"}, {"None", "Nessuna"}, {"N/A", "N/D"}, {"WEP", "wrong"}});
  EXPECT_EQ(interfaceModeText(WifiInterfaceMode::station, strings), "Infrastruttura");
  EXPECT_EQ(interfaceModeText(WifiInterfaceMode::none, strings), "Nessuna");
  EXPECT_EQ(securityText(WifiSecurity::none, strings), "Nessuna");
  EXPECT_EQ(securityText(WifiSecurity::owe, strings), "N/D");
  EXPECT_EQ(phyModeText(WifiPhyMode::none, strings), "N/D");
  EXPECT_EQ(notAvailableText(strings), "N/D");
  EXPECT_EQ(lanternfold::channelText(WifiChannel{.channelNumber = 37,
                                                 .channelBand = WifiChannelBand::band6GHz,
                                                 .channelWidth = WifiChannelWidth::width160MHz},
                                     strings),
            "37 (N/D, 160MHz)");
}

TEST(WlanTextsTest, FixedTextsAreNotLookedUp) {
  EXPECT_EQ(securityText(WifiSecurity::wep, FakeStringTable({{"WEP", "wrong"}})), "WEP");
}

}  // namespace
}  // namespace lanternfold
