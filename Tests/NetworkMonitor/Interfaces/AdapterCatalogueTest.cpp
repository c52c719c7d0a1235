#include <gtest/gtest.h>

#include "NetworkMonitor/Interfaces/AdapterCatalogue.h"
#include "Tests/Support/FakeNetworkConfiguration.h"
#include "Tests/Support/FakeStringTable.h"

namespace lanternfold {
namespace {

using Configured = ConfiguredInterfaceType;

class AdapterCatalogueTest : public testing::Test {
 protected:
  [[nodiscard]] AdapterDescription describe(std::string_view name) const {
    return AdapterCatalogue(configuration, strings).describe(name);
  }

  FakeNetworkConfiguration configuration;
  FakeStringTable strings{{{"Wi-Fi", "WLAN"}, {"Ethernet", "Kabel"}, {"Bluetooth", "Blauzahn"}}};
};

TEST_F(AdapterCatalogueTest, TypeIsThatOfTheConfiguredAdapter) {
  configuration.addInterface("en0", Configured::ieee80211, "Card 0");
  configuration.addInterface("en1", Configured::ethernet, "Card 1");
  configuration.addInterface("en2", Configured::bluetooth, "Card 2");
  EXPECT_EQ(describe("en0"), (AdapterDescription{InterfaceType::wlan, "Card 0"}));
  EXPECT_EQ(describe("en1"), (AdapterDescription{InterfaceType::ethernet, "Card 1"}));
  EXPECT_EQ(describe("en2"), (AdapterDescription{InterfaceType::bluetooth, "Card 2"}));
  EXPECT_TRUE(configuration.scopedQuestions().empty());
}

TEST_F(AdapterCatalogueTest, AdapterOfAnyOtherTypeIsUnknownWithoutAFurtherQuestion) {
  configuration.addInterface("en3", Configured::other, "Card 3");
  configuration.setScopedType("en3", PathInterfaceType::wifi);
  EXPECT_EQ(describe("en3"), (AdapterDescription{InterfaceType::unknown, "Card 3"}));
  EXPECT_TRUE(configuration.scopedQuestions().empty());
}

TEST_F(AdapterCatalogueTest, AdapterWithoutTypeIsAskedForByAScopedLoopbackAddress) {
  configuration.addInterface("en0", std::nullopt, "Card 0");
  configuration.setScopedType("en0", PathInterfaceType::wifi);
  EXPECT_EQ(describe("en0"), (AdapterDescription{InterfaceType::wlan, "Card 0"}));
  EXPECT_EQ(configuration.scopedQuestions(), (std::vector<std::string>{"127.0.0.1%en0"}));
}

TEST_F(AdapterCatalogueTest, UnlistedNameIsAskedForByAScopedLoopbackAddress) {
  configuration.setScopedType("en8", PathInterfaceType::wiredEthernet);
  EXPECT_EQ(describe("en8"), (AdapterDescription{InterfaceType::ethernet, "Kabel"}));
  EXPECT_EQ(configuration.scopedQuestions(), (std::vector<std::string>{"127.0.0.1%en8"}));
}

TEST_F(AdapterCatalogueTest, ScopedTypesOtherThanWifiAndEthernetAreUnknown) {
  configuration.setScopedType("pdp_ip0", PathInterfaceType::cellular);
  configuration.setScopedType("lo0", PathInterfaceType::loopback);
  configuration.setScopedType("x0", PathInterfaceType::other);
  for (const char* name : {"pdp_ip0", "lo0", "x0"}) {
    EXPECT_EQ(describe(name), (AdapterDescription{InterfaceType::unknown, name}));
  }
}

TEST_F(AdapterCatalogueTest, TunnelThatNobodyKnowsIsUnknownAndGoesByItsName) {
  EXPECT_EQ(describe("utun0"), (AdapterDescription{InterfaceType::unknown, "utun0"}));
}

TEST_F(AdapterCatalogueTest, NameThatIsNoScopeIsUnknown) {
  EXPECT_EQ(describe("a%b c"), (AdapterDescription{InterfaceType::unknown, "a%b c"}));
  EXPECT_EQ(describe(""), (AdapterDescription{InterfaceType::unknown, ""}));
}

TEST_F(AdapterCatalogueTest, AdapterWithoutAHumanNameGoesByTheLocalisedNameOfItsType) {
  configuration.addInterface("en0", Configured::ieee80211, std::nullopt);
  configuration.addInterface("en1", Configured::ethernet, std::nullopt);
  configuration.addInterface("en2", Configured::bluetooth, std::nullopt);
  configuration.addInterface("en3", Configured::other, std::nullopt);
  EXPECT_EQ(describe("en0").displayName, "WLAN");
  EXPECT_EQ(describe("en1").displayName, "Kabel");
  EXPECT_EQ(describe("en2").displayName, "Blauzahn");
  EXPECT_EQ(describe("en3").displayName, "en3");
}

TEST_F(AdapterCatalogueTest, UntranslatedTypesGoByTheirEnglishNames) {
  strings = FakeStringTable();
  configuration.addInterface("en0", Configured::ieee80211, std::nullopt);
  configuration.addInterface("en1", Configured::ethernet, std::nullopt);
  configuration.addInterface("en2", Configured::bluetooth, std::nullopt);
  EXPECT_EQ(describe("en0").displayName, "Wi-Fi");
  EXPECT_EQ(describe("en1").displayName, "Ethernet");
  EXPECT_EQ(describe("en2").displayName, "Bluetooth");
}

TEST_F(AdapterCatalogueTest, OfTwoAdaptersOfOneNameTheFirstCounts) {
  configuration.addInterface("en0", Configured::ethernet, "First");
  configuration.addInterface("en0", Configured::ieee80211, "Second");
  EXPECT_EQ(describe("en0"), (AdapterDescription{InterfaceType::ethernet, "First"}));
}

TEST_F(AdapterCatalogueTest, TheFirstOfANameCountsEvenWithoutAName) {
  configuration.addInterface("en0", Configured::ethernet, std::nullopt);
  configuration.addInterface("en0", Configured::ethernet, "Second");
  EXPECT_EQ(describe("en0").displayName, "Kabel");
}

TEST_F(AdapterCatalogueTest, NamesAreComparedExactly) {
  configuration.addInterface("en0", Configured::ethernet, "Card");
  EXPECT_EQ(describe("en01").displayName, "en01");
  EXPECT_EQ(describe("EN0").displayName, "EN0");
}

TEST_F(AdapterCatalogueTest, StaysAsItWasWhenTheSystemChanges) {
  configuration.addInterface("en0", Configured::ethernet, "Card");
  const AdapterCatalogue catalogue(configuration, strings);
  configuration.removeInterfaces();
  EXPECT_EQ(catalogue.describe("en0"), (AdapterDescription{InterfaceType::ethernet, "Card"}));
  EXPECT_EQ(configuration.listCount(), 1U);
}

}  // namespace
}  // namespace lanternfold
