#include <gtest/gtest.h>

#include "NetworkMonitor/Wlan/CoreWlanInterfaceResolver.h"
#include "Tests/Support/BracketingStringTable.h"
#include "Tests/Support/FakeResolvers.h"
#include "Tests/Support/FakeWifiClient.h"

namespace lanternfold {
namespace {

WifiInterface joined() {
  return {.interfaceName = "wlan0",
          .interfaceMode = WifiInterfaceMode::station,
          .powerOn = true,
          .ssid = "Home Network",
          .bssid = "12:34:56:ab:cd:ef",
          .activePHYMode = WifiPhyMode::mode11ac,
          .countryCode = "IT",
          .security = WifiSecurity::wpa2Personal,
          .wlanChannel = WifiChannel{.channelNumber = 44,
                                     .channelBand = WifiChannelBand::band5GHz,
                                     .channelWidth = WifiChannelWidth::width80MHz},
          .rssiValue = -39,
          .noiseMeasurement = -92,
          .transmitPower = 100,
          .transmitRate = 866.7};
}

/// As the interface resolver knows it: its own activity differs from the radio's.
BasicInterface wlan0() {
  return {.active = false,
          .displayName = "Wireless Adapter",
          .metrics = {.sentBytes = 1, .recvBytes = 2},
          .name = "wlan0",
          .type = InterfaceType::wlan,
          .hwAddress = "02:00:00:00:00:01"};
}

class CoreWlanInterfaceResolverTest : public testing::Test {
 protected:
  CoreWlanInterfaceResolverTest() {
    BasicInterface other = wlan0();
    other.name = "wlan1";
    other.displayName = "Other Adapter";
    interfaces_->machine = {other, wlan0()};
  }

  /// Of a resolver that never fails.
  std::optional<WlanInterface> resolved() {
    auto answer = resolver_.wlanInterface();
    EXPECT_TRUE(answer.has_value());
    return answer ? *std::move(answer) : std::nullopt;
  }
  std::optional<WlanInterface> resolved(const WifiInterface& wifi) {
    wifi_.setInterface(wifi);
    return resolved();
  }
  WlanMetrics radioFiguresOf(const WifiInterface& wifi) {
    const auto wlan = resolved(wifi);
    if (!wlan || !wlan->currentNetwork || !wlan->currentNetwork->metrics) {
      ADD_FAILURE() << "there are no radio figures";
      return {};
    }
    return *wlan->currentNetwork->metrics;
  }

  const std::shared_ptr<FakeInterfaceResolver> interfaces_ =
      std::make_shared<FakeInterfaceResolver>();
  FakeWifiClient wifi_{joined()};
  const BracketingStringTable strings_;
  CoreWlanInterfaceResolver resolver_{interfaces_, {.wifiClient = wifi_, .strings = strings_}};
};

TEST_F(CoreWlanInterfaceResolverTest, ShowsTheInterfaceAndTheJoinedNetwork) {
  const WlanInterface expected{
      .active = true,
      .displayName = "Wireless Adapter",
      .mode = "«Station»",
      .interface = wlan0(),
      .currentNetwork = WlanNetwork{.ssid = "Home Network",
                                    .bssid = "12:34:56:ab:cd:ef",
                                    .metrics = WlanMetrics{.PHYMode = "802.11ac",
                                                           .countryCode = "IT",
                                                           .security = "WPA 2 Personal",
                                                           .channel = "44 (5GHz, 80MHz)",
                                                           .rssi = -39,
                                                           .noise = -92,
                                                           .transmitPower = 100,
                                                           .transmitRate = 866.7}}};
  EXPECT_EQ(resolved(), expected);
}

TEST_F(CoreWlanInterfaceResolverTest, WithoutWifiThereIsNone) {
  wifi_.setInterface(std::nullopt);
  EXPECT_EQ(resolved(), std::nullopt);
}

TEST_F(CoreWlanInterfaceResolverTest, AnInterfaceWithoutANameIsNone) {
  auto wifi = joined();
  wifi.interfaceName.reset();
  EXPECT_EQ(resolved(wifi), std::nullopt);
}

TEST_F(CoreWlanInterfaceResolverTest, AnInterfaceThatTheResolverDoesNotKnowIsNone) {
  auto wifi = joined();
  wifi.interfaceName = "wlan2";
  EXPECT_EQ(resolved(wifi), std::nullopt);
  interfaces_->machine.clear();
  EXPECT_EQ(resolved(joined()), std::nullopt);
}

TEST_F(CoreWlanInterfaceResolverTest, WifiOnButSsidWithheldIsActiveWithoutANetwork) {
  wifi_.setWithholding(true);
  const auto wlan = resolved();
  ASSERT_TRUE(wlan);
  EXPECT_TRUE(wlan->active);
  EXPECT_EQ(wlan->currentNetwork, std::nullopt);
  EXPECT_EQ(wlan->mode, "«Station»");
  EXPECT_EQ(wlan->interface, wlan0());
}

TEST_F(CoreWlanInterfaceResolverTest, ABssidWithoutAnSsidIsNoNetwork) {
  auto wifi = joined();
  wifi.ssid.reset();
  const auto wlan = resolved(wifi);
  ASSERT_TRUE(wlan);
  EXPECT_EQ(wlan->currentNetwork, std::nullopt);
}

TEST_F(CoreWlanInterfaceResolverTest, BssidWithheldWhileTheSsidIsKnownIsNotAvailable) {
  auto wifi = joined();
  wifi.bssid.reset();
  const auto wlan = resolved(wifi);
  ASSERT_TRUE(wlan && wlan->currentNetwork);
  EXPECT_EQ(wlan->currentNetwork->ssid, "Home Network");
  EXPECT_EQ(wlan->currentNetwork->bssid, "«N/A»");
  EXPECT_TRUE(wlan->currentNetwork->metrics);
}

TEST_F(CoreWlanInterfaceResolverTest, AnEmptySsidIsANetworkAllTheSame) {
  auto wifi = joined();
  wifi.ssid = "";
  const auto wlan = resolved(wifi);
  ASSERT_TRUE(wlan && wlan->currentNetwork);
  EXPECT_EQ(wlan->currentNetwork->ssid, "");
}

TEST_F(CoreWlanInterfaceResolverTest, WithWifiOffIsNotActive) {
  const auto wlan = resolved({.interfaceName = "wlan0"});
  ASSERT_TRUE(wlan);
  EXPECT_FALSE(wlan->active);
  EXPECT_EQ(wlan->mode, "«None»");
  EXPECT_EQ(wlan->currentNetwork, std::nullopt);
}

TEST_F(CoreWlanInterfaceResolverTest, TheRadioSaysWhetherItIsActiveNotTheInterface) {
  interfaces_->machine.back().active = true;
  auto wifi = joined();
  wifi.powerOn = false;
  const auto wlan = resolved(wifi);
  ASSERT_TRUE(wlan);
  EXPECT_FALSE(wlan->active);
  EXPECT_TRUE(wlan->interface.active);
}

TEST_F(CoreWlanInterfaceResolverTest, AModeBeyondTheTableIsNotAvailable) {
  auto wifi = joined();
  wifi.interfaceMode = static_cast<WifiInterfaceMode>(4);
  const auto wlan = resolved(wifi);
  ASSERT_TRUE(wlan);
  EXPECT_EQ(wlan->mode, "«N/A»");
}

TEST_F(CoreWlanInterfaceResolverTest, WithoutACountryTheCodeIsNotAvailable) {
  auto wifi = joined();
  wifi.countryCode.reset();
  EXPECT_EQ(radioFiguresOf(wifi).countryCode, "«N/A»");
}

TEST_F(CoreWlanInterfaceResolverTest, FiguresThatAreNotKnown) {
  const WlanMetrics expected{.PHYMode = "«N/A»",
                             .countryCode = "«N/A»",
                             .security = "«N/A»",
                             .channel = "«N/A»",
                             .rssi = 0,
                             .noise = 0,
                             .transmitPower = 0,
                             .transmitRate = 0};
  EXPECT_EQ(radioFiguresOf({.interfaceName = "wlan0", .ssid = "Cafe"}), expected);
}

TEST_F(CoreWlanInterfaceResolverTest, SecurityOf14Or15IsNotAvailableAnd4IsWpa2) {
  auto wifi = joined();
  wifi.security = WifiSecurity::owe;
  EXPECT_EQ(radioFiguresOf(wifi).security, "«N/A»");
  wifi.security = WifiSecurity::oweTransition;
  EXPECT_EQ(radioFiguresOf(wifi).security, "«N/A»");
  wifi.security = WifiSecurity::wpa2Personal;
  EXPECT_EQ(radioFiguresOf(wifi).security, "WPA 2 Personal");
}

TEST_F(CoreWlanInterfaceResolverTest, AChannelOn6GHz) {
  auto wifi = joined();
  wifi.wlanChannel = WifiChannel{.channelNumber = 37,
                                 .channelBand = WifiChannelBand::band6GHz,
                                 .channelWidth = WifiChannelWidth::width160MHz};
  EXPECT_EQ(radioFiguresOf(wifi).channel, "37 («N/A», 160MHz)");
}

TEST_F(CoreWlanInterfaceResolverTest, LooksAfreshOnceForEachQuestion) {
  EXPECT_TRUE(resolved());
  wifi_.setInterface(std::nullopt);
  EXPECT_FALSE(resolved());
  EXPECT_EQ(wifi_.looks(), 2);
}

TEST(CoreWlanInterfaceResolverDeathTest, NeedsAnInterfaceResolver) {
  const FakeWifiClient wifi;
  const BracketingStringTable strings;
  EXPECT_DEATH(CoreWlanInterfaceResolver(nullptr, {.wifiClient = wifi, .strings = strings}),
               "a Wi-Fi resolver was made without an interface resolver");
}

}  // namespace
}  // namespace lanternfold
