#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "PlatformLinux/Location/ConsentText.h"

namespace lanternfold {
namespace {

constexpr auto damaged = ConsentTextError::damaged;
constexpr auto laterVersion = ConsentTextError::laterVersion;

TEST(ConsentText, EveryDecisionIsALineOfItsOwn) {
  EXPECT_EQ(encodeConsent(ConsentDecision::notDetermined), "location-consent 1\nnotDetermined\n");
  EXPECT_EQ(encodeConsent(ConsentDecision::denied), "location-consent 1\ndenied\n");
  EXPECT_EQ(encodeConsent(ConsentDecision::authorizedAlways),
            "location-consent 1\nauthorizedAlways\n");
  EXPECT_EQ(encodeConsent(ConsentDecision::authorizedWhenInUse),
            "location-consent 1\nauthorizedWhenInUse\n");
}

TEST(ConsentText, EveryDecisionIsReadAgain) {
  for (const auto decision :
       {ConsentDecision::notDetermined, ConsentDecision::denied, ConsentDecision::authorizedAlways,
        ConsentDecision::authorizedWhenInUse}) {
    EXPECT_EQ(decodeConsent(encodeConsent(decision)), decision);
  }
}

TEST(ConsentText, TheFixtureIsWhatIsWritten) {
  std::ifstream stream(LANTERNFOLD_SOURCE_DIR "/Docs/formats/fixtures/location-consent");
  const std::string fixture{std::istreambuf_iterator<char>(stream), {}};
  EXPECT_EQ(fixture, encodeConsent(ConsentDecision::authorizedWhenInUse));
}

TEST(ConsentText, ATextCutAnywhereIsDamaged) {
  const std::string whole = encodeConsent(ConsentDecision::authorizedWhenInUse);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_EQ(decodeConsent(std::string_view(whole).substr(0, length)).error(), damaged) << length;
  }
}

TEST(ConsentText, ATextWithOneByteOfAnotherValueIsNoConsent) {
  const std::string whole = encodeConsent(ConsentDecision::authorizedAlways);
  for (std::size_t place = 0; place < whole.size(); ++place) {
    for (int bit = 0; bit < 8; ++bit) {
      std::string text = whole;
      text[place] = static_cast<char>(static_cast<unsigned char>(text[place]) ^ (1U << bit));
      EXPECT_FALSE(decodeConsent(text)) << place << " " << bit;
    }
  }
}

TEST(ConsentText, WhatNoVersionWritesIsDamaged) {
  using namespace std::string_view_literals;
  for (const std::string_view text :
       {"location-consent 1\nrestricted\n"sv, "location-consent 1\nDenied\n"sv,
        "location-consent 1\r\ndenied\r\n"sv, "location-consent 1\ndenied\n\n"sv,
        "location-consent 1\ndenied\n\0"sv, " location-consent 1\ndenied\n"sv,
        "location-consent 0\ndenied\n"sv, "location-consent 02\ndenied\n"sv,
        "location-consent +2\ndenied\n"sv, "location-consent \ndenied\n"sv, "location-consent 2"sv,
        "3"sv}) {
    EXPECT_EQ(decodeConsent(text).error(), damaged) << text;
  }
}

TEST(ConsentText, AHigherNumberIsOfALaterVersion) {
  EXPECT_EQ(decodeConsent("location-consent 2\ndenied\n").error(), laterVersion);
  EXPECT_EQ(decodeConsent("location-consent 10\n").error(), laterVersion);
  EXPECT_EQ(decodeConsent("location-consent 123456789\n{}").error(), laterVersion);
  EXPECT_EQ(decodeConsent("location-consent 99999999999999999999999\nfoo\n").error(), laterVersion);
}

TEST(ConsentText, ATextTooLongIsDamagedWhateverItBeginsWith) {
  const std::string begun = "location-consent 2\n";
  EXPECT_EQ(decodeConsent(begun + std::string(longestConsentText - begun.size(), 'x')).error(),
            laterVersion);
  EXPECT_EQ(decodeConsent(begun + std::string(longestConsentText, 'x')).error(), damaged);
}

TEST(ConsentTextDeathTest, ADecisionThatIsNoneStopsTheProgram) {
  EXPECT_DEATH((void)encodeConsent(static_cast<ConsentDecision>(1)), "that is no decision");
}

}  // namespace
}  // namespace lanternfold
