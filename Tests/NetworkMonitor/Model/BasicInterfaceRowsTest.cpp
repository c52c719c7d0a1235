#include <gtest/gtest.h>

#include "NetworkMonitor/Model/BasicInterface.h"
#include "Tests/Support/BracketingStringTable.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/SourceListText.h"

namespace lanternfold {
namespace {

std::string rowsOf(const BasicInterface& interface) {
  return sourceListText(interface.compressedListRepresentation(FakeStringTable()));
}

/// The rows with every text that was looked up between guillemets.
std::string bracketedRowsOf(const BasicInterface& interface) {
  return sourceListText(interface.compressedListRepresentation(BracketingStringTable()));
}

BasicInterface ethernet() {
  return {.active = true,
          .displayName = "Ethernet Adapter",
          .name = "en2",
          .type = InterfaceType::ethernet,
          .supportsIPv4 = true,
          .IPv4 = {{.address = "192.168.0.9",
                    .netmask = "255.255.255.0",
                    .gateway = "192.168.0.254",
                    .cidr = "192.168.0.1/24"}},
          .hwAddress = "AB:CD:EF:12:34:57"};
}

TEST(BasicInterfaceRows, ShowNameAddressRouterAndMac) {
  EXPECT_EQ(rowsOf(ethernet()),
            "en2 / Ethernet Adapter !\n"
            "IP / 192.168.0.9\n"
            "Router / 192.168.0.1/24\n"
            "MAC / ab:cd:ef:12:34:57 !\n");
}

TEST(BasicInterfaceRows, ShowOnlyTheNameOfABareInterface) {
  EXPECT_EQ(rowsOf({.displayName = "Adapter", .name = "en5"}), "en5 / Adapter !\n");
}

TEST(BasicInterfaceRows, ShowTheFirstRowEvenWhenEverythingIsEmpty) {
  EXPECT_EQ(rowsOf({}), " /  !\n");
}

TEST(BasicInterfaceRows, ShowTheBlockNotTheGatewayAsRouter) {
  EXPECT_EQ(rowsOf(ethernet()).find("192.168.0.254"), std::string::npos);
}

TEST(BasicInterfaceRows, ShowOnlyTheFirstIPv4Entry) {
  auto interface = ethernet();
  interface.IPv4.push_back({.address = "10.0.0.1", .cidr = "10.0.0.0/8"});
  EXPECT_EQ(rowsOf(interface), rowsOf(ethernet()));
}

TEST(BasicInterfaceRows, LeaveIPv4OutWhenItIsNotSupportedThoughAddressesAreThere) {
  auto interface = ethernet();
  interface.supportsIPv4 = false;
  EXPECT_EQ(rowsOf(interface), "en2 / Ethernet Adapter !\nMAC / ab:cd:ef:12:34:57 !\n");
}

TEST(BasicInterfaceRows, LeaveIPv4OutWhenItIsSupportedButHasNoAddress) {
  auto interface = ethernet();
  interface.IPv4.clear();
  EXPECT_EQ(rowsOf(interface), "en2 / Ethernet Adapter !\nMAC / ab:cd:ef:12:34:57 !\n");
}

TEST(BasicInterfaceRows, NeverShowIPv6) {
  auto interface = ethernet();
  interface.supportsIPv6 = true;
  interface.IPv6 = {{.address = "fe80::1", .prefix = 64, .gateway = "::", .cidr = "fe80::/64"}};
  EXPECT_EQ(rowsOf(interface), rowsOf(ethernet()));
}

TEST(BasicInterfaceRows, HaveNoMacWithoutAHardwareAddress) {
  auto interface = ethernet();
  interface.hwAddress.reset();
  EXPECT_EQ(rowsOf(interface).find("MAC"), std::string::npos);
}

TEST(BasicInterfaceRows, AreTheSameWhetherActiveOrNot) {
  auto interface = ethernet();
  interface.active = false;
  EXPECT_EQ(rowsOf(interface), rowsOf(ethernet()));
}

TEST(BasicInterfaceRows, LookUpEveryLabelButTheNameAndNoValue) {
  EXPECT_EQ(bracketedRowsOf(ethernet()),
            "en2 / Ethernet Adapter !\n"
            "«IP» / 192.168.0.9\n"
            "«Router» / 192.168.0.1/24\n"
            "«MAC» / ab:cd:ef:12:34:57 !\n");
}

TEST(BasicInterfaceRows, HaveNoLongList) {
  EXPECT_TRUE(ethernet().listRepresentation(FakeStringTable()).empty());
}

}  // namespace
}  // namespace lanternfold
