#include "PlatformLinux/Wifi/InformationElements.h"
#include "Tests/PlatformLinux/Wifi/WifiFrames.h"

namespace lanternfold::test {
namespace {

TEST(InformationElements, NoElementsTellNothing) {
  EXPECT_EQ(decodeInformationElements({}), InformationElements{});
}

TEST(InformationElements, TheNameIsItsRawBytes) {
  const Bytes name = {0xFF, 0x00, 0x0A, '"', '<'};
  EXPECT_EQ(decodeInformationElements(element(0, name)).ssid, name);
  EXPECT_EQ(decodeInformationElements(element(0, {})).ssid, Bytes());
  EXPECT_EQ(decodeInformationElements(element(0, Bytes(32, 'a'))).ssid, Bytes(32, 'a'));
}

TEST(InformationElements, ANameOfMoreThan32BytesIsNone) {
  EXPECT_EQ(decodeInformationElements(element(0, Bytes(33, 'a'))).ssid, std::nullopt);
}

TEST(InformationElements, OfAnElementThatIsThereTwiceTheFirstCounts) {
  const Bytes bytes = joined({element(0, textOnly("first")), element(0, textOnly("second")),
                              element(48, rsnBody({8})), element(48, rsnBody({2}))});
  const auto elements = decodeInformationElements(bytes);
  EXPECT_EQ(elements.ssid, textOnly("first"));
  EXPECT_EQ(elements.rsn->authentications, std::vector{rsnSuite(8)});
}

TEST(InformationElements, TellsRsnWpaAndTheOweTransition) {
  const Bytes bytes =
      joined({element(0, textOnly("cafe")), element(48, rsnBody({2, 8})),
              element(221, wpaBody({2})), oweTransitionElement(), element(221, {0x00, 0x50, 0xF2}),
              element(221, {0x00, 0x50, 0xF2, 4, 1})});
  const auto elements = decodeInformationElements(bytes);
  EXPECT_EQ(elements.rsn->authentications, (std::vector{rsnSuite(2), rsnSuite(8)}));
  EXPECT_EQ(elements.wpa->authentications, std::vector{wpaSuite(2)});
  EXPECT_TRUE(elements.isOweTransition);
  EXPECT_FALSE(elements.isDamaged);
}

TEST(InformationElements, AnIllegibleSecurityElementIsNoOpenNetwork) {
  const auto illegible = decodeInformationElements(element(48, {9, 9, 9}));
  EXPECT_TRUE(illegible.isDamaged);
  EXPECT_EQ(illegible.rsn, std::nullopt);
  EXPECT_TRUE(decodeInformationElements(element(221, {0x00, 0x50, 0xF2, 1})).isDamaged);
}

TEST(InformationElements, ALengthThatLiesEndsTheWalkAndWhatCameBeforeStands) {
  const Bytes bytes =
      joined({element(0, textOnly("cafe")), element(48, rsnBody({2}), 255), Bytes(10)});
  const auto elements = decodeInformationElements(bytes);
  EXPECT_EQ(elements.ssid, textOnly("cafe"));
  EXPECT_EQ(elements.rsn, std::nullopt);
  EXPECT_TRUE(elements.isDamaged);
  EXPECT_TRUE(decodeInformationElements(Bytes{48}).isDamaged);
}

TEST(InformationElements, ALengthThatIsTooShortMisreadsNothingBeyondTheEnd) {
  const auto elements = decodeInformationElements(element(48, rsnBody({2}), 3));
  EXPECT_EQ(elements.rsn, std::nullopt);
  EXPECT_TRUE(elements.isDamaged);
}

TEST(InformationElements, TheGenerationIsTheLatestThatIsAnnouncedWhole) {
  const Bytes ht = joined({element(45, Bytes(26)), element(61, Bytes(22))});
  const Bytes vht = joined({element(191, Bytes(12)), element(192, Bytes(5))});
  const Bytes he = joined({extension(35, 21), extension(36, 6)});
  const Bytes eht = joined({extension(106, 5), extension(108, 11)});
  const std::pair<Bytes, WifiGeneration> cases[] = {
      {{}, WifiGeneration::legacy},
      {ht, WifiGeneration::ht},
      {joined({ht, vht}), WifiGeneration::vht},
      {joined({he, vht, ht}), WifiGeneration::he},
      {joined({ht, eht, he}), WifiGeneration::eht},
      {element(45, Bytes(26)), WifiGeneration::legacy},
      {element(61, Bytes(22)), WifiGeneration::legacy},
      {joined({element(45, Bytes(25)), element(61, Bytes(22))}), WifiGeneration::legacy},
      {joined({element(191, Bytes(12)), element(192, Bytes(4)), ht}), WifiGeneration::ht},
      {joined({extension(35, 20), extension(36, 6), ht}), WifiGeneration::ht},
      {joined({extension(106, 4), extension(108, 11)}), WifiGeneration::legacy},
      {element(255, {}), WifiGeneration::legacy},
  };
  for (const auto& [bytes, generation] : cases) {
    EXPECT_EQ(decodeInformationElements(bytes).generation, generation);
  }
}

TEST(InformationElements, TellsWhetherEveryRateIsOneOfTheOldest) {
  const std::pair<Bytes, bool> cases[] = {
      {{}, false},
      {element(1, {0x82, 0x84, 0x8B, 0x96}), true},
      {element(1, {0x82, 0x84, 0x8B, 0x96, 0x0C}), false},
      {joined({element(1, {0x82, 0x84, 0x8B, 0x96}), element(50, {0x30})}), false},
      {joined({element(1, {2, 4, 11, 22}), element(50, {0xFF})}), true},
      {element(1, {0xFF}), false},
      {element(1, {}), false},
  };
  for (const auto& [bytes, expected] : cases) {
    EXPECT_EQ(decodeInformationElements(bytes).onlyOldestRates, expected);
  }
}

TEST(InformationElements, CutAnywhereTheyAreShorterOrDamaged) {
  const Bytes bytes = joined({element(0, textOnly("cafe")), element(1, {0x82}),
                              element(48, rsnBody({2, 8})), element(221, wpaBody({2})),
                              oweTransitionElement(), extension(36, 6), extension(35, 21)});
  const auto whole = decodeInformationElements(bytes);
  forEveryCut(bytes, [&](const Bytes& cut) {
    EXPECT_NE(decodeInformationElements(cut), whole) << cut.size();
  });
}

}  // namespace
}  // namespace lanternfold::test
