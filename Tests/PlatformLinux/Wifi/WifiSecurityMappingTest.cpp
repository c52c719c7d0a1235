#include "PlatformLinux/Wifi/WifiSecurityMapping.h"
#include "Tests/PlatformLinux/Wifi/WifiFrames.h"

namespace lanternfold::test {
namespace {

using enum WifiSecurity;

const Bytes name = element(0, textOnly("cafe"));
constexpr int requiresProtection = 0xC0;

WifiSecurity ofElements(const Bytes& elements, bool hasPrivacy = true) {
  return securityOf(decodeInformationElements(joined({name, elements})), hasPrivacy);
}

Bytes rsn(std::initializer_list<int> authentications, int capabilities = 0) {
  return element(48, rsnBody(authentications, capabilities));
}
Bytes wpa(std::initializer_list<int> authentications) {
  return element(221, wpaBody(authentications));
}

TEST(WifiSecurityMapping, MapsEverythingThatANetworkMayOffer) {
  const std::pair<Bytes, WifiSecurity> cases[] = {
      {{}, wep},
      {wpa({2}), wpaPersonal},
      {joined({wpa({2}), rsn({2})}), wpaPersonalMixed},
      {rsn({2}), wpa2Personal},
      {rsn({2, 6}, 0x80), wpa2Personal},
      {rsn({4}), wpa2Personal},
      {rsn({8}, requiresProtection), wpa3Personal},
      {rsn({9}), wpa3Personal},
      {rsn({24}), wpa3Personal},
      {rsn({8, 24, 9, 25}), wpa3Personal},
      {rsn({2, 8}, 0x80), wpa3Transition},
      {rsn({2, 4, 6, 8, 9}), wpa3Transition},
      {joined({wpa({2}), rsn({2, 8})}), personal},
      {wpa({1}), wpaEnterprise},
      {joined({wpa({1}), rsn({1})}), wpaEnterpriseMixed},
      {rsn({1}), wpa2Enterprise},
      {rsn({3}), wpa2Enterprise},
      {rsn({1, 5}, 0x80), wpa2Enterprise},
      {rsn({5}), wpa2Enterprise},
      {rsn({14, 1}), wpa2Enterprise},
      {rsn({5}, requiresProtection), wpa3Enterprise},
      {rsn({11}), wpa3Enterprise},
      {rsn({12}, requiresProtection), wpa3Enterprise},
      {rsn({13}), wpa3Enterprise},
      {rsn({23}), wpa3Enterprise},
      {rsn({1, 12}), enterprise},
      {rsn({18}, requiresProtection), owe},
      {joined({rsn({18}), oweTransitionElement()}), oweTransition},
      {element(221, wpaBody({1}, 1)), dynamicWep},
      {element(221, wpaBody({1}, 5)), dynamicWep},
      {rsn({1, 2}), unknown},
      {rsn({99}), unknown},
      {rsn({21}), unknown},
      {element(48, {9}), unknown},
      {joined({element(48, {9}), wpa({2})}), unknown},
      {joined({rsn({2}), element(221, {0x00, 0x50, 0xF2, 1, 7})}), wpa2Personal},
      {element(48, {1, 0}), wpa2Enterprise},
  };
  int row = 0;
  for (const auto& [elements, security] : cases) {
    EXPECT_EQ(ofElements(elements), security) << "row " << row;
    ++row;
  }
}

TEST(WifiSecurityMapping, FastRoamingBesideWpa3EnterpriseIsNoWpa2Enterprise) {
  const std::pair<Bytes, WifiSecurity> cases[] = {
      {rsn({3, 5}, requiresProtection), wpa3Enterprise},
      {rsn({5, 3}, requiresProtection), wpa3Enterprise},
      {rsn({3, 5}, 0x80), wpa2Enterprise},
      {rsn({3}, requiresProtection), wpa2Enterprise},
      {rsn({1, 3, 5}, requiresProtection), wpa2Enterprise},
  };
  for (const auto& [elements, security] : cases) EXPECT_EQ(ofElements(elements), security);
}

TEST(WifiSecurityMapping, WithoutPrivacyTheNetworkIsOpenUnlessItsPartnerEncrypts) {
  EXPECT_EQ(ofElements({}, false), none);
  EXPECT_EQ(ofElements(oweTransitionElement(), false), oweTransition);
  EXPECT_EQ(ofElements(rsn({2}), false), wpa2Personal);
}

TEST(WifiSecurityMapping, ElementsThatAreNotThereOrIllegibleAreNeverAnOpenNetwork) {
  EXPECT_EQ(securityOf({}, false), unknown);
  EXPECT_EQ(securityOf({}, true), unknown);
  EXPECT_EQ(ofElements({48, 20, 1, 0}, false), unknown);
  EXPECT_EQ(ofElements({48}, true), unknown);
}

}  // namespace
}  // namespace lanternfold::test
