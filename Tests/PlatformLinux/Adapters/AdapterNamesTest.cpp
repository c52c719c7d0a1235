#include "PlatformLinux/Adapters/AdapterNames.h"

namespace lanternfold {
namespace {

struct Case {
  std::string vendor;
  std::string model;
  std::optional<std::string> expected;
};

TEST(AdapterNames, SaysVendorAndModelWithoutFillerWords) {
  const std::vector<Case> cases = {
      {"Intel Corporation", "82574L Gigabit Network Connection", "Intel 82574L Gigabit"},
      {"Intel Corporation", "Ethernet Connection (4) I219-V",
       "Intel Ethernet Connection (4) I219-V"},
      {"Intel Corporation", "Ethernet Controller X710 for 10GbE SFP+",
       "Intel Ethernet Controller X710 for 10GbE SFP+"},
      {"Intel Corporation", "Wi-Fi 6 AX200", "Intel Wi-Fi 6 AX200"},
      {"Intel Corp.", "Intel(R) Ethernet Connection I217-LM", "Intel Ethernet Connection I217-LM"},
      {"Realtek Semiconductor Co., Ltd.",
       "RTL8111/8168/8411 PCI Express Gigabit Ethernet Controller",
       "Realtek RTL8111/8168/8411 PCI Express Gigabit Ethernet"},
      {"Realtek Semiconductor Corp.", "RTL8153 Gigabit Ethernet Adapter",
       "Realtek RTL8153 Gigabit Ethernet"},
      {"Qualcomm Atheros", "QCA9377 802.11ac Wireless Network Adapter",
       "Qualcomm Atheros QCA9377 802.11ac Wireless"},
      {"Broadcom Inc. and subsidiaries", "NetXtreme BCM5720 Gigabit Ethernet PCIe",
       "Broadcom NetXtreme BCM5720 Gigabit Ethernet PCIe"},
      {"ASIX Electronics Corp.", "AX88179 Gigabit Ethernet", "ASIX AX88179 Gigabit Ethernet"},
      {"Marvell Technology Group Ltd.", "88E8056 PCI-E Gigabit Ethernet Controller",
       "Marvell 88E8056 PCI-E Gigabit Ethernet"},
      {"Advanced Micro Devices, Inc. [AMD]", "79c970 [PCnet32 LANCE]",
       "AMD 79c970 [PCnet32 LANCE]"},
      {"Red Hat, Inc.", "Virtio 1.0 network device", "Red Hat Virtio 1.0"},
      {"MEDIATEK Corp.", "MT7921 802.11ax PCI Express Wireless Network Adapter",
       "MEDIATEK MT7921 802.11ax PCI Express Wireless"},
      {"", "USB 10/100 LAN", "USB 10/100 LAN"},
  };
  for (const Case& each : cases) {
    EXPECT_EQ(adapterName({each.vendor, each.model}), each.expected) << each.vendor;
  }
}

TEST(AdapterNames, AVendorAloneNamesNothing) {
  EXPECT_EQ(adapterName({"Intel Corporation", ""}), std::nullopt);
  EXPECT_EQ(adapterName({"Intel Corporation", "  "}), std::nullopt);
  EXPECT_EQ(adapterName({"", ""}), std::nullopt);
}

TEST(AdapterNames, AModelOfFillerWordsAloneStays) {
  EXPECT_EQ(adapterName({"Acme Inc.", "Network Adapter"}), "Acme Network Adapter");
}

TEST(AdapterNames, AVendorOfFillerWordsAloneKeepsItsFirstWord) {
  EXPECT_EQ(adapterName({"Technology Group Ltd.", "X1"}), "Technology X1");
}

TEST(AdapterNames, AModelThatIsTheVendorAgainIsSaidOnce) {
  EXPECT_EQ(adapterName({"TP-Link", "tp-link UE300"}), "tp-link UE300");
}

TEST(AdapterNames, ControlCharactersBecomeSpaces) {
  EXPECT_EQ(adapterName({"Acme\n", "One\tTwo\x7FThree"}), "Acme One Two Three");
}

TEST(AdapterNames, AnEndlessNameIsCutBetweenCharacters) {
  std::string model = "A";
  for (int i = 0; i < 100; ++i) model += "\u00E9";
  const std::optional<std::string> name = adapterName({"", model});
  ASSERT_TRUE(name);
  EXPECT_EQ(*name, model.substr(0, 95));
}

}  // namespace
}  // namespace lanternfold
