#include <gtest/gtest.h>

#include "Tests/Support/FakeStringTable.h"
#include "WidgetHost/AdapterOptions.h"

namespace lanternfold {
namespace {

BasicInterface adapter(std::string name, std::string displayName,
                       InterfaceType type = InterfaceType::ethernet) {
  return {.active = true,
          .displayName = std::move(displayName),
          .name = std::move(name),
          .type = type,
          .supportsIPv4 = true,
          .IPv4 = {{.address = "192.0.2.1"}}};
}

std::vector<std::string> displaysOf(const std::vector<NetworkAdapter>& options) {
  std::vector<std::string> displays;
  for (const NetworkAdapter& option : options) displays.push_back(option.display);
  return displays;
}

using Displays = std::vector<std::string>;

class AdapterOptionsTest : public testing::Test {
 protected:
  FakeStringTable strings_;
};

TEST_F(AdapterOptionsTest, AnOptionIsTheAdaptersHumanNameWithTheInterfaces) {
  EXPECT_EQ(adapterOption(adapter("eth0", "USB network adapter")),
            (NetworkAdapter{.identifier = "eth0", .display = "USB network adapter (eth0)"}));
}

TEST_F(AdapterOptionsTest, AnAdapterWithoutAHumanNameIsCalledLikeItsInterface) {
  EXPECT_EQ(adapterOption(adapter("eth0", "")).display, "eth0");
  EXPECT_EQ(adapterOption(adapter("eth0", "eth0")).display, "eth0");
}

TEST_F(AdapterOptionsTest, TwoOfAKindAreToldApart) {
  EXPECT_EQ(displaysOf(adapterOptions({adapter("eth0", "Port"), adapter("eth1", "Port")}, "eth0",
                                      strings_)),
            (Displays{"Automatic, now Port (eth0)", "Port (eth0)", "Port (eth1)"}));
}

TEST_F(AdapterOptionsTest, TheAutomaticChoiceComesFirstAndIsCalledAuto) {
  const auto options = adapterOptions({adapter("eth0", "Port")}, std::nullopt, strings_);
  ASSERT_EQ(options.size(), 2U);
  EXPECT_EQ(options[0].identifier, "auto");
  EXPECT_EQ(options[1].identifier, "eth0");
}

TEST_F(AdapterOptionsTest, TheAutomaticChoiceSaysWhatItIsNow) {
  const std::vector<BasicInterface> both = {adapter("eth0", "Port"),
                                            adapter("wlan0", "Radio", InterfaceType::wlan)};
  EXPECT_EQ(displaysOf(adapterOptions(both, "wlan0", strings_)).front(),
            "Automatic, now Radio (wlan0)");
  EXPECT_EQ(displaysOf(adapterOptions(both, std::nullopt, strings_)).front(),
            "Automatic, now Port (eth0)");
  EXPECT_EQ(displaysOf(adapterOptions(both, "tun0", strings_)).front(),
            "Automatic, now Port (eth0)")
      << "the best route leads through no adapter";
}

TEST_F(AdapterOptionsTest, AMachineWithoutAdaptersHasTheAutomaticChoiceAlone) {
  EXPECT_EQ(adapterOptions({}, "eth0", strings_),
            (std::vector{NetworkAdapter{.identifier = "auto", .display = "Automatic"}}));
}

TEST_F(AdapterOptionsTest, AreWiredBeforeWifiBeforeTheRestThenByNameWhateverIsConnected) {
  BasicInterface unplugged = adapter("eth1", "Port");
  unplugged.active = false;
  const auto options = adapterOptions(
      {adapter("aaa0", "Thing", InterfaceType::unknown),
       adapter("bbb0", "Radio", InterfaceType::wlan), adapter("eth2", "Port"), unplugged},
      "bbb0", strings_);
  EXPECT_EQ(displaysOf(options), (Displays{"Automatic, now Radio (bbb0)", "Port (eth1)",
                                           "Port (eth2)", "Radio (bbb0)", "Thing (aaa0)"}));
}

TEST_F(AdapterOptionsTest, AreInTheUsersLanguage) {
  strings_.set("Automatic", "Automatico");
  strings_.set("Automatic, now %@", "Automatico, ora %@");
  EXPECT_EQ(automaticOption(nullptr, strings_).display, "Automatico");
  const BasicInterface port = adapter("eth0", "Port");
  EXPECT_EQ(automaticOption(&port, strings_).display, "Automatico, ora Port (eth0)");
}

}  // namespace
}  // namespace lanternfold
