#include "PlatformLinux/Adapters/AdapterList.h"

namespace lanternfold {
namespace {

using Type = ConfiguredInterfaceType;

TEST(AdapterList, IsOrderedByTypeThenByName) {
  const std::vector<ConfiguredInterface> adapters = {
      {"wwan0", Type::other, {}},     {"odd", {}, {}},
      {"wlan1", Type::ieee80211, {}}, {"eth1", Type::ethernet, {}},
      {"bnep0", Type::bluetooth, {}}, {"eth0", Type::ethernet, {}},
      {"wlan0", Type::ieee80211, {}}, {"bond0", Type::other, {}}};
  std::string order;
  for (const ConfiguredInterface& each : arrangedAdapters(adapters)) order += each.bsdName + " ";
  EXPECT_EQ(order, "eth0 eth1 wlan0 wlan1 bnep0 bond0 wwan0 odd ");
}

TEST(AdapterList, EqualNamesAreToldApartByTheKernelsName) {
  const std::vector<ConfiguredInterface> expected = {
      {"enp1s0", Type::ethernet, "Intel I210 (enp1s0)"},
      {"enp2s0", Type::ethernet, "Intel I211"},
      {"enp3s0", Type::ethernet, "Intel I210 (enp3s0)"}};
  EXPECT_EQ(arrangedAdapters({{"enp3s0", Type::ethernet, "Intel I210"},
                              {"enp1s0", Type::ethernet, "Intel I210"},
                              {"enp2s0", Type::ethernet, "Intel I211"}}),
            expected);
}

TEST(AdapterList, AdaptersWithoutANameStayWithout) {
  const std::vector<ConfiguredInterface> adapters = {{"eth0", Type::ethernet, {}},
                                                     {"eth1", Type::ethernet, {}}};
  EXPECT_EQ(arrangedAdapters(adapters), adapters);
}

}  // namespace
}  // namespace lanternfold
