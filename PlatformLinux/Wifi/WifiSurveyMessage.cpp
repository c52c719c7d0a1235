#include "PlatformLinux/Wifi/WifiSurveyMessage.h"

#include <array>

#include <linux/nl80211.h>

#include "PlatformLinux/Netlink/AttributeTable.h"
#include "PlatformLinux/Netlink/GenericNetlink.h"

namespace lanternfold {

namespace {

constexpr AttributeTable messageTable(std::array{
    nestedAttribute(NL80211_ATTR_SURVEY_INFO, "NL80211_ATTR_SURVEY_INFO"),
});

constexpr AttributeTable surveyTable(std::array{
    numberAttribute<std::uint32_t>(NL80211_SURVEY_INFO_FREQUENCY, "NL80211_SURVEY_INFO_FREQUENCY"),
    numberAttribute<std::int8_t>(NL80211_SURVEY_INFO_NOISE, "NL80211_SURVEY_INFO_NOISE"),
    flagAttribute(NL80211_SURVEY_INFO_IN_USE, "NL80211_SURVEY_INFO_IN_USE"),
});

}  // namespace

std::expected<WifiSurveyMessage, DecodeError> decodeWifiSurvey(const NetlinkMessage& message) {
  const auto outer = genericAttributes(message, messageTable);
  if (!outer) return std::unexpected(outer.error());
  const auto bytes = outer->bytes(NL80211_ATTR_SURVEY_INFO);
  if (!bytes) {
    return std::unexpected(DecodeError{DecodeProblem::missing, "NL80211_ATTR_SURVEY_INFO"});
  }
  const auto survey = surveyTable.parse(*bytes);
  if (!survey) return std::unexpected(survey.error());
  return WifiSurveyMessage{
      .frequencyMegahertz = survey->number<std::uint32_t>(NL80211_SURVEY_INFO_FREQUENCY),
      .noiseDbm = survey->number<std::int8_t>(NL80211_SURVEY_INFO_NOISE),
      .isInUse = survey->has(NL80211_SURVEY_INFO_IN_USE)};
}

}  // namespace lanternfold
