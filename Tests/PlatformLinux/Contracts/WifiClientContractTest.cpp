// What every side of the Wi-Fi seam promises. The Linux side asks a kernel that the test plays: a
// radio is nothing that a test can make for itself.
#include <atomic>
#include <thread>

#include "PlatformLinux/Netlink/GenericNetlink.h"
#include "Tests/PlatformLinux/Wifi/ScriptedWifi.h"
#include "Tests/Support/FakeWifiClient.h"

namespace lanternfold::test {
namespace {

/// The interface while no network is joined.
WifiInterface unjoined() {
  WifiInterface interface;
  interface.interfaceName = "wlan5";
  interface.interfaceMode = WifiInterfaceMode::station;
  interface.powerOn = true;
  interface.countryCode = "DE";
  interface.wlanChannel = WifiChannel{44, WifiChannelBand::band5GHz, WifiChannelWidth::width80MHz};
  interface.transmitPower = 200;
  return interface;
}

WifiInterface joinedTo(const std::string& network) {
  WifiInterface interface = unjoined();
  interface.ssid = network;
  interface.bssid = "02:00:00:00:01:01";
  interface.activePHYMode = WifiPhyMode::mode11ax;
  interface.security = WifiSecurity::wpa3Personal;
  interface.rssiValue = -47;
  interface.noiseMeasurement = -92;
  interface.transmitRate = 540;
  return interface;
}

WifiInterface withoutNames(WifiInterface interface) {
  interface.ssid.reset();
  interface.bssid.reset();
  return interface;
}

class LinuxWifiWorld {
 public:
  LinuxWifiWorld() {
    generic_.answerBy([this](const NetlinkMessage& request) { return answerTo(request); });
    route_.answerBy([](const NetlinkMessage&) { return linkAnswer(5, IFF_UP); });
  }

  void setNetwork(const std::string& network) {
    const std::lock_guard lock(mutex_);
    hasWifi_ = true;
    network_ = network;
  }
  void takeWifiAway() {
    const std::lock_guard lock(mutex_);
    hasWifi_ = false;
  }
  void setConsent(bool isThere) { consent_ = isThere; }
  const WifiClient& client() { return client_; }

 private:
  ScriptedAnswer answerTo(const NetlinkMessage& request) {
    if (request.type == GENL_ID_CTRL) return familyAnswer();
    const std::lock_guard lock(mutex_);
    switch (genericCommand(request).value_or(0)) {
      case NL80211_CMD_GET_INTERFACE:
        if (!hasWifi_) return answerOf({});
        return answerOf({interfacePayload(5, NL80211_IFTYPE_STATION, network_)});
      case NL80211_CMD_GET_SCAN:
        return answerOf({cellPayload(false, 9), cellPayload(!network_.empty())});
      case NL80211_CMD_GET_STATION:
        return answerOf({stationPayload()});
      case NL80211_CMD_GET_SURVEY:
        return answerOf({surveyPayload()});
      default:
        return countryAnswer();
    }
  }

  std::mutex mutex_;
  bool hasWifi_ = false;  // guarded by mutex_, as is the next one
  std::string network_;
  std::atomic<bool> consent_ = true;
  TemporaryFolder tree_;
  ScriptedNetlink generic_;
  ScriptedNetlink route_;
  LinuxWifiClient client_{[this] { return consent_.load(); },
                          {.genericNetlink = generic_.opener(),
                           .routeNetlink = route_.opener(),
                           .deviceTree = DeviceTree(tree_.path())}};
};

class FakeWifiWorld {
 public:
  void setNetwork(const std::string& network) {
    client_.setInterface(network.empty() ? unjoined() : joinedTo(network));
  }
  void takeWifiAway() { client_.setInterface(std::nullopt); }
  void setConsent(bool isThere) { client_.setWithholding(!isThere); }
  const WifiClient& client() { return client_; }

 private:
  FakeWifiClient client_;
};

template <typename World>
class WifiClientContract : public testing::Test {
 protected:
  [[nodiscard]] std::optional<WifiInterface> seen() { return world_.client().interface(); }

  World world_;
};

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    return std::is_same_v<World, LinuxWifiWorld> ? "ScriptedLinux" : "Fake";
  }
};

using Worlds = testing::Types<LinuxWifiWorld, FakeWifiWorld>;
TYPED_TEST_SUITE(WifiClientContract, Worlds, WorldNames);

TYPED_TEST(WifiClientContract, WithoutWifiThereIsNone) {
  EXPECT_EQ(this->seen(), std::nullopt);
  this->world_.setConsent(false);
  EXPECT_EQ(this->seen(), std::nullopt);
}

TYPED_TEST(WifiClientContract, WithConsentTheJoinedNetworkIsToldInWhole) {
  this->world_.setNetwork("cafe");
  EXPECT_EQ(this->seen(), joinedTo("cafe"));
}

TYPED_TEST(WifiClientContract, WithoutConsentTheNamesAreNoneAndTheRestIsTheSame) {
  this->world_.setNetwork("cafe");
  this->world_.setConsent(false);
  EXPECT_EQ(this->seen(), withoutNames(joinedTo("cafe")));
}

TYPED_TEST(WifiClientContract, WithoutANetworkConsentDoesNotMatter) {
  this->world_.setNetwork("");
  EXPECT_EQ(this->seen(), unjoined());
  this->world_.setConsent(false);
  EXPECT_EQ(this->seen(), unjoined());
}

TYPED_TEST(WifiClientContract, EachReadingIsAskedForAfresh) {
  this->world_.setNetwork("cafe");
  EXPECT_EQ(this->seen(), joinedTo("cafe"));
  this->world_.setNetwork("home");
  EXPECT_EQ(this->seen(), joinedTo("home"));
  this->world_.setConsent(false);
  EXPECT_EQ(this->seen(), withoutNames(joinedTo("home")));
  this->world_.setConsent(true);
  EXPECT_EQ(this->seen(), joinedTo("home"));
  this->world_.setNetwork("");
  EXPECT_EQ(this->seen(), unjoined());
  this->world_.takeWifiAway();
  EXPECT_EQ(this->seen(), std::nullopt);
}

TYPED_TEST(WifiClientContract, SeveralThreadsMayAskWhileTheConsentChanges) {
  this->world_.setNetwork("cafe");
  const WifiInterface told = joinedTo("cafe");
  const WifiInterface withheld = withoutNames(told);
  std::atomic<int> wrong = 0;
  {
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread) {
      threads.emplace_back([&] {
        for (int reading = 0; reading < 50; ++reading) {
          const auto interface = this->seen();
          if (interface != told && interface != withheld) ++wrong;
        }
      });
    }
    for (int change = 0; change <= 100; ++change) this->world_.setConsent(change % 2 == 0);
  }
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(this->seen(), told);
}

}  // namespace
}  // namespace lanternfold::test
