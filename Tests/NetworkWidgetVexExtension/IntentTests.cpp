// The intents, their responses and their results.
#include <csignal>

#include <gtest/gtest.h>

#include "NetworkWidgetVexExtension/Intents/AdapterConfigurationIntent.h"
#include "NetworkWidgetVexExtension/Intents/AdapterConfigurationIntentResponse.h"
#include "NetworkWidgetVexExtension/Intents/BooleanResolutionResult.h"
#include "NetworkWidgetVexExtension/Intents/ConfigurationIntent.h"
#include "NetworkWidgetVexExtension/Intents/ConfigurationIntentResponse.h"
#include "NetworkWidgetVexExtension/Intents/NetworkAdapterResolutionResult.h"
#include "NetworkWidgetVexExtension/Intents/RefreshAppIntent.h"
#include "NetworkWidgetVexExtension/Views/RefreshButton.h"
#include "Tests/Support/FakeStringTable.h"

namespace lanternfold {
namespace {

using AdapterResult = NetworkAdapterResolutionResult;
using BooleanOutcome = BooleanResolutionResult::Outcome;

const NetworkAdapter wired{.identifier = "en0", .display = "Port (en0)"};
const NetworkAdapter wireless{
    .identifier = "en1", .display = "Wi-Fi (en1)", .pronunciationHint = "why fie"};
const IntentObject anything{.identifier = "en0", .display = "Port (en0)"};

TEST(ConfigurationIntent, OfNothingIsEmpty) {
  EXPECT_EQ(ConfigurationIntent::from({}), ConfigurationIntent{});
  EXPECT_EQ(AdapterConfigurationIntent::from({}), AdapterConfigurationIntent{});
}

TEST(ConfigurationIntent, TakesWhatItHasFromWhatAHostRemembers) {
  const ConfigurationParameters parameters{.showTimestamp = true,
                                           .adapter = AdapterParameter{"en1", "Wi-Fi"}};
  EXPECT_EQ(ConfigurationIntent::from(parameters), (ConfigurationIntent{.showTimestamp = true}));
  EXPECT_EQ(AdapterConfigurationIntent::from(parameters),
            (AdapterConfigurationIntent{
                .adapter = NetworkAdapter{.identifier = "en1", .display = "Wi-Fi"},
                .showTimestamp = true}));
}

TEST(AdapterConfigurationIntent, KeepsAnAdapterWithoutAnIdentifier) {
  const auto intent = AdapterConfigurationIntent::from(
      {.showTimestamp = {}, .adapter = AdapterParameter{std::nullopt, "Automatic"}});
  EXPECT_EQ(intent.adapter, (NetworkAdapter{.identifier = std::nullopt, .display = "Automatic"}));
}

TEST(IntentResponse, HasACodeAndIfWantedTheUsersActivity) {
  const ConfigurationIntentResponse plain{ConfigurationIntentResponseCode::success};
  EXPECT_EQ(plain.code, ConfigurationIntentResponseCode::success);
  EXPECT_EQ(plain.userActivity, std::nullopt);
  const UserActivity activity{.activityType = "net.quernaple.LanternfoldX.adapter",
                              .userInfo = {{"adapter", "en0"}}};
  const AdapterConfigurationIntentResponse withActivity{
      AdapterConfigurationIntentResponseCode::continueInApp, activity};
  EXPECT_EQ(withActivity.userActivity, activity);
  EXPECT_EQ(withActivity.code, AdapterConfigurationIntentResponseCode::continueInApp);
}

TEST(BooleanResolutionResult, SaysWhatBecameOfTheParameter) {
  EXPECT_EQ(BooleanResolutionResult::success(true).outcome(), BooleanOutcome::success);
  EXPECT_EQ(BooleanResolutionResult::success(true).value(), true);
  EXPECT_EQ(BooleanResolutionResult::success(false).value(), false);
  EXPECT_EQ(BooleanResolutionResult::confirmationRequired(true).value(), true);
  EXPECT_EQ(BooleanResolutionResult::confirmationRequired(std::nullopt).value(), std::nullopt);
  EXPECT_EQ(BooleanResolutionResult::needsValue().outcome(), BooleanOutcome::needsValue);
  EXPECT_EQ(BooleanResolutionResult::notRequired().outcome(), BooleanOutcome::notRequired);
  EXPECT_EQ(BooleanResolutionResult::unsupported().outcome(), BooleanOutcome::unsupported);
}

TEST(NetworkAdapterResolutionResult, OfASuccessHasTheAdapter) {
  const AdapterResult result = AdapterResult::success(wired);
  EXPECT_EQ(result.outcome(), AdapterResult::Outcome::success);
  EXPECT_EQ(result.adapters(), std::vector{wired});
}

TEST(NetworkAdapterResolutionResult, OfADisambiguationHasThoseToChooseFrom) {
  const AdapterResult result = AdapterResult::disambiguation({wired, wireless});
  EXPECT_EQ(result.outcome(), AdapterResult::Outcome::disambiguation);
  EXPECT_EQ(result.adapters(), (std::vector{wired, wireless}));
}

TEST(NetworkAdapterResolutionResult, MayAskToConfirmAnAdapterOrNone) {
  EXPECT_EQ(AdapterResult::confirmationRequired(wired).adapters(), std::vector{wired});
  const AdapterResult none = AdapterResult::confirmationRequired(std::nullopt);
  EXPECT_EQ(none.outcome(), AdapterResult::Outcome::confirmationRequired);
  EXPECT_TRUE(none.adapters().empty());
}

constexpr const char* unavailable =
    "^Fatal error \\(NetworkWidgetVexExtension/NetworkAdapter\\)\n$";

TEST(NetworkAdapterResolutionResultDeathTest, AnyObjectIsNoSuccess) {
  EXPECT_EXIT(AdapterResult::successWithResolvedObject(anything), testing::KilledBySignal(SIGABRT),
              unavailable);
}

TEST(NetworkAdapterResolutionResultDeathTest, AnyObjectsAreNoDisambiguation) {
  EXPECT_EXIT(AdapterResult::disambiguationWithObjects({anything}),
              testing::KilledBySignal(SIGABRT), unavailable);
}

TEST(NetworkAdapterResolutionResultDeathTest, AnyObjectIsNotToBeConfirmed) {
  EXPECT_EXIT(AdapterResult::confirmationRequiredWithObject(anything),
              testing::KilledBySignal(SIGABRT), unavailable);
}

TEST(NetworkAdapterCoding, IsSecure) { EXPECT_TRUE(NetworkAdapter::supportsSecureCoding); }

TEST(NetworkAdapterCoding, WritesADictionaryOfTexts) {
  EXPECT_EQ(wireless.encoded(),
            PropertyListValue(PropertyListDictionary{{"identifier", "en1"},
                                                     {"displayString", "Wi-Fi (en1)"},
                                                     {"pronunciationHint", "why fie"}}));
}

TEST(NetworkAdapterCoding, LeavesOutWhatIsAbsent) {
  EXPECT_EQ((NetworkAdapter{.identifier = std::nullopt, .display = "Automatic"}).encoded(),
            PropertyListValue(PropertyListDictionary{{"displayString", "Automatic"}}));
}

TEST(NetworkAdapterCoding, ReadsWhatItWrote) {
  for (const NetworkAdapter& adapter :
       {wired, wireless, NetworkAdapter{.identifier = std::nullopt, .display = ""}}) {
    EXPECT_EQ(NetworkAdapter::decode(adapter.encoded()), adapter) << adapter.display;
  }
}

TEST(NetworkAdapterCoding, SkipsMembersThatItDoesNotKnow) {
  EXPECT_EQ(NetworkAdapter::decode(PropertyListDictionary{
                {"identifier", "en0"}, {"displayString", "Port (en0)"}, {"colour", 7}}),
            wired);
}

TEST(NetworkAdapterCoding, RefusesEverythingThatIsNoAdapter) {
  using Error = NetworkAdapterCodingError;
  const std::vector<std::pair<PropertyListValue, Error>> wrong = {
      {"en0", Error::notADictionary},
      {7, Error::notADictionary},
      {PropertyListArray{PropertyListDictionary{{"displayString", "x"}}}, Error::notADictionary},
      {PropertyListDictionary{}, Error::missingDisplay},
      {PropertyListDictionary{{"identifier", "en0"}}, Error::missingDisplay},
      {PropertyListDictionary{{"displayString", 7}}, Error::wrongType},
      {PropertyListDictionary{{"displayString", PropertyListValue::Data{std::byte{65}}}},
       Error::wrongType},
      {PropertyListDictionary{{"displayString", "x"}, {"identifier", true}}, Error::wrongType},
      {PropertyListDictionary{{"displayString", "x"}, {"pronunciationHint", PropertyListArray{}}},
       Error::wrongType}};
  for (std::size_t index = 0; index < wrong.size(); ++index) {
    const auto decoded = NetworkAdapter::decode(wrong[index].first);
    ASSERT_FALSE(decoded.has_value()) << index;
    EXPECT_EQ(decoded.error(), wrong[index].second) << index;
  }
}

TEST(RefreshAppIntent, HasItsTitleInTheUsersLanguage) {
  FakeStringTable strings;
  EXPECT_EQ(RefreshAppIntent(strings).title(), "Bramblecast Refresh");
  strings.set("Bramblecast Refresh", "Aggiorna Bramblecast");
  EXPECT_EQ(RefreshAppIntent(strings).title(), "Aggiorna Bramblecast");
}

TEST(RefreshAppIntent, PerformsAtOnceWithAnEmptyResultAndOpensNothing) {
  const FakeStringTable strings;
  EXPECT_EQ(RefreshAppIntent(strings).perform(), IntentResult{});
  EXPECT_FALSE(RefreshAppIntent(strings).openAppWhenRun());
}

const ButtonNode* buttonIn(const View& view) {
  if (const auto* button = std::get_if<ButtonNode>(&view.node)) return button;
  for (const View& child : view.children) {
    if (const ButtonNode* button = buttonIn(child)) return button;
  }
  return nullptr;
}

TEST(RefreshAppIntent, IsWhatTheRefreshButtonRuns) {
  const FakeStringTable strings;
  const View corner = refreshButtonInCorner({.strings = strings});
  ASSERT_NE(buttonIn(corner), nullptr);
  EXPECT_EQ(buttonIn(corner)->intent, RefreshAppIntent(strings).name());
}

}  // namespace
}  // namespace lanternfold
