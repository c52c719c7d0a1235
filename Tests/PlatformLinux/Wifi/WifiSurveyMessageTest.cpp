#include "PlatformLinux/Wifi/WifiRegulatoryMessage.h"
#include "PlatformLinux/Wifi/WifiSurveyMessage.h"
#include "Tests/PlatformLinux/Wifi/WifiFrames.h"

namespace lanternfold::test {
namespace {

Bytes surveyAnswer(std::initializer_list<Bytes> figures) {
  return wifiPayload(NL80211_CMD_NEW_SURVEY_RESULTS, {number32(NL80211_ATTR_IFINDEX, 5),
                                                      nested(NL80211_ATTR_SURVEY_INFO, figures)});
}

auto decodedSurvey(const Bytes& payload) {
  return decodeWifiSurvey(payloadMessage(nl80211Type, payload));
}

TEST(WifiSurveyMessage, TellsNoiseAndWhetherTheChannelIsInUse) {
  const Bytes payload =
      surveyAnswer({number32(NL80211_SURVEY_INFO_FREQUENCY, 5220),
                    number8(NL80211_SURVEY_INFO_NOISE, -92), flag(NL80211_SURVEY_INFO_IN_USE)});
  EXPECT_EQ(decodedSurvey(payload).value(),
            (WifiSurveyMessage{
                .frequencyMegahertz = 5220, .noiseDbm = std::int8_t{-92}, .isInUse = true}));
  EXPECT_EQ(decodedSurvey(surveyAnswer({})).value(), WifiSurveyMessage{});
  forEveryCut(payload, [&](const Bytes& bytes) { EXPECT_FALSE(decodedSurvey(bytes)); });
}

TEST(WifiSurveyMessage, WithoutFiguresItIsAnError) {
  const Bytes payload = wifiPayload(NL80211_CMD_NEW_SURVEY_RESULTS, {});
  EXPECT_EQ(decodedSurvey(payload).error(),
            (DecodeError{DecodeProblem::missing, "NL80211_ATTR_SURVEY_INFO"}));
  EXPECT_EQ(decodedSurvey(surveyAnswer({number32(NL80211_SURVEY_INFO_NOISE, 1)})).error(),
            (DecodeError{DecodeProblem::wrongSize, "NL80211_SURVEY_INFO_NOISE"}));
}

TEST(WifiSurveyMessage, WhatIsThereTwiceIsAnError) {
  const Bytes noise = number8(NL80211_SURVEY_INFO_NOISE, -92);
  EXPECT_EQ(decodedSurvey(surveyAnswer({noise, noise})).error(),
            (DecodeError{DecodeProblem::duplicate, "NL80211_SURVEY_INFO_NOISE"}));
  const Bytes info = nested(NL80211_ATTR_SURVEY_INFO, {noise});
  EXPECT_EQ(decodedSurvey(wifiPayload(NL80211_CMD_NEW_SURVEY_RESULTS, {info, info})).error(),
            (DecodeError{DecodeProblem::duplicate, "NL80211_ATTR_SURVEY_INFO"}));
}

TEST(WifiSurveyMessage, NestedTooDeepIsNotFollowed) {
  Bytes deep = number8(NL80211_SURVEY_INFO_NOISE, -92);
  for (int level = 0; level < 1000; ++level) deep = attribute(NL80211_ATTR_SURVEY_INFO, deep);
  EXPECT_EQ(decodedSurvey(surveyAnswer({deep})).value(), WifiSurveyMessage{});
}

auto decodedCountry(const Bytes& code) {
  const Bytes payload =
      wifiPayload(NL80211_CMD_GET_REG, {attribute(NL80211_ATTR_REG_ALPHA2, code)});
  return decodeWifiRegulatory(payloadMessage(nl80211Type, payload));
}

TEST(WifiRegulatoryMessage, TellsACountryAndNothingElse) {
  EXPECT_EQ(decodedCountry(textBytes("DE"))->countryCode, "DE");
  EXPECT_EQ(decodedCountry(textOnly("US"))->countryCode, "US");
  for (const char* code : {"00", "97", "98", "99", "de", "D0", " D"}) {
    EXPECT_EQ(decodedCountry(textBytes(code))->countryCode, std::nullopt) << code;
  }
}

TEST(WifiRegulatoryMessage, WhatIsWrongIsNamed) {
  EXPECT_EQ(decodedCountry({}).error(),
            (DecodeError{DecodeProblem::wrongSize, "NL80211_ATTR_REG_ALPHA2"}));
  EXPECT_EQ(decodedCountry(textBytes("DEU")).error(),
            (DecodeError{DecodeProblem::wrongSize, "NL80211_ATTR_REG_ALPHA2"}));
  const Bytes without = wifiPayload(NL80211_CMD_GET_REG, {});
  EXPECT_EQ(decodeWifiRegulatory(payloadMessage(nl80211Type, without)).error(),
            (DecodeError{DecodeProblem::missing, "NL80211_ATTR_REG_ALPHA2"}));
  const Bytes code = attribute(NL80211_ATTR_REG_ALPHA2, textBytes("DE"));
  const Bytes twice = wifiPayload(NL80211_CMD_GET_REG, {code, code});
  EXPECT_EQ(decodeWifiRegulatory(payloadMessage(nl80211Type, twice)).error(),
            (DecodeError{DecodeProblem::duplicate, "NL80211_ATTR_REG_ALPHA2"}));
  const Bytes whole =
      wifiPayload(NL80211_CMD_GET_REG, {attribute(NL80211_ATTR_REG_ALPHA2, textBytes("DE"))});
  // The last byte is padding.
  forEveryCut(Bytes(whole.begin(), whole.end() - 1), [](const Bytes& bytes) {
    EXPECT_FALSE(decodeWifiRegulatory(payloadMessage(nl80211Type, bytes)));
  });
}

}  // namespace
}  // namespace lanternfold::test
