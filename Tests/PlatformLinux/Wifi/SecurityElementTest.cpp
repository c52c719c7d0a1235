#include "PlatformLinux/Wifi/SecurityElement.h"
#include "Tests/PlatformLinux/Wifi/WifiFrames.h"

namespace lanternfold::test {
namespace {

const Bytes versionAndGroup = {1, 0, 0x00, 0x0F, 0xAC, 4};

TEST(SecurityElement, TellsEverythingOfAnRsnElement) {
  const Bytes body = joined({{1, 0, 0x00, 0x0F, 0xAC, 2},
                             suites({4, 2}),
                             suites({8, 2}),
                             {0xC0, 0},
                             {1, 0},
                             Bytes(16),
                             {0x00, 0x0F, 0xAC, 6}});
  EXPECT_EQ(decodeRsnElement(body).value(),
            (SecurityElement{.groupCipher = rsnSuite(2),
                             .pairwiseCiphers = {rsnSuite(4), rsnSuite(2)},
                             .authentications = {rsnSuite(8), rsnSuite(2)},
                             .offersManagementProtection = true,
                             .requiresManagementProtection = true,
                             .managementCipher = rsnSuite(6)}));
}

TEST(SecurityElement, WhatAnElementThatEndsEarlyLeavesOutHasItsDefault) {
  const SecurityElement defaults{.groupCipher = rsnSuite(4),
                                 .pairwiseCiphers = {rsnSuite(4)},
                                 .authentications = {rsnSuite(1)},
                                 .managementCipher = std::nullopt};
  EXPECT_EQ(decodeRsnElement(Bytes{1, 0}).value(), defaults);
  EXPECT_EQ(decodeRsnElement(versionAndGroup).value(), defaults);
  EXPECT_EQ(decodeRsnElement(joined({versionAndGroup, suites({4})})).value(), defaults);
  EXPECT_EQ(decodeWpaElement(Bytes{1, 0}).value(),
            (SecurityElement{.groupCipher = wpaSuite(2),
                             .pairwiseCiphers = {wpaSuite(2)},
                             .authentications = {wpaSuite(1)},
                             .managementCipher = std::nullopt}));
}

TEST(SecurityElement, OffersManagementProtectionWithoutRequiringIt) {
  const auto element = decodeRsnElement(rsnBody({2}, 0x80)).value();
  EXPECT_TRUE(element.offersManagementProtection);
  EXPECT_FALSE(element.requiresManagementProtection);
}

TEST(SecurityElement, WhatIsWrongIsNamed) {
  using enum DecodeProblem;
  const std::pair<Bytes, DecodeError> cases[] = {
      {{}, {truncated, "version"}},
      {{1}, {truncated, "version"}},
      {{2, 0}, {badValue, "version"}},
      {{1, 0, 0}, {truncated, "group cipher"}},
      {joined({versionAndGroup, {0, 0}}), {badValue, "pairwise ciphers"}},
      {joined({versionAndGroup, {1}}), {truncated, "pairwise ciphers"}},
      {joined({versionAndGroup, {2, 0, 0x00, 0x0F, 0xAC, 4}}), {truncated, "pairwise ciphers"}},
      {joined({versionAndGroup, {0xFF, 0xFF}}), {truncated, "pairwise ciphers"}},
      {joined({versionAndGroup, suites({4}), {0, 0}}), {badValue, "authentications"}},
      {joined({versionAndGroup, suites({4}), suites({2}), {0}}), {truncated, "capabilities"}},
      {joined({versionAndGroup, suites({4}), suites({2}), {0, 0}, {9, 0}}),
       {truncated, "PMKID list"}},
      {joined({versionAndGroup, suites({4}), suites({2}), {0, 0}, {9}}),
       {truncated, "PMKID count"}},
      {joined({versionAndGroup, suites({4}), suites({2}), {0, 0}, {0, 0}, {1, 2}}),
       {truncated, "group management cipher"}},
  };
  for (const auto& [body, error] : cases) {
    const auto element = decodeRsnElement(body);
    ASSERT_FALSE(element) << description(error);
    EXPECT_EQ(element.error(), error) << description(element.error());
  }
}

TEST(SecurityElement, CutAnywhereItIsAnErrorOrAShorterAnswer) {
  const Bytes body = joined({rsnBody({8, 9}, 0xC0), {0, 0}, {0x00, 0x0F, 0xAC, 6}});
  const auto whole = decodeRsnElement(body).value();
  forEveryCut(body, [&](const Bytes& bytes) {
    const auto cut = decodeRsnElement(bytes);
    EXPECT_TRUE(!cut || *cut != whole) << bytes.size();
  });
}

}  // namespace
}  // namespace lanternfold::test
