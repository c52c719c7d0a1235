#include <gtest/gtest.h>

#include "Tests/Support/FakePathMonitor.h"
#include "Tests/Support/FakeResolvers.h"
#include "Tests/Support/FakeStringTable.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"
#include "WidgetHost/AdapterIntentHandler.h"

namespace lanternfold {
namespace {

using Result = NetworkAdapterResolutionResult;

BasicInterface port(std::string name, std::string displayName = "Port") {
  return {.active = true,
          .displayName = std::move(displayName),
          .name = std::move(name),
          .type = InterfaceType::ethernet,
          .supportsIPv4 = true,
          .IPv4 = {{.address = "192.0.2.1"}}};
}

const NetworkAdapter automatic{.identifier = "auto", .display = "Automatic, now Port (en1)"};
const NetworkAdapter first{.identifier = "en0", .display = "Port (en0)"};
const NetworkAdapter second{.identifier = "en1", .display = "Port (en1)"};
const std::vector<NetworkAdapter> everything{automatic, first, second};

AdapterConfigurationIntent choosing(std::optional<std::string> identifier, std::string display) {
  return {
      .adapter = NetworkAdapter{.identifier = std::move(identifier), .display = std::move(display)},
      .showTimestamp = {}};
}

class AdapterIntentHandlerTest : public testing::Test {
 protected:
  AdapterIntentHandlerTest() {
    interfaces_->machine = {port("en0"), port("en1"), port("lo")};
    pathMonitors_.deliver({.status = PathStatus::satisfied,
                           .availableInterfaces = {{.name = "en1"}, {.name = "en0"}}});
  }

  std::vector<Result> resolutionsOf(const AdapterConfigurationIntent& intent) {
    std::vector<Result> results;
    handler_->resolveAdapter(intent, [&](Result result) { results.push_back(std::move(result)); });
    dispatch_.advance(std::chrono::seconds(5));
    return results;
  }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakePathMonitorFactory pathMonitors_;
  FakeStringTable strings_;
  std::shared_ptr<FakeInterfaceResolver> interfaces_ = std::make_shared<FakeInterfaceResolver>();
  std::shared_ptr<AdapterIntentHandler> handler_ = std::make_shared<AdapterIntentHandler>(
      interfaces_, std::make_shared<BestRouteFinder>(pathMonitors_, dispatch_.mainQueue()),
      strings_);
};

TEST_F(AdapterIntentHandlerTest, OffersTheAutomaticChoiceAndEveryAdapter) {
  std::vector<AdapterConfigurationIntentHandling::AdapterOptions> answers;
  handler_->provideAdapterOptions({}, [&](auto options) { answers.push_back(options); });
  EXPECT_TRUE(answers.empty()) << "nothing waits for the path";
  dispatch_.advance(std::chrono::seconds(5));
  ASSERT_EQ(answers.size(), 1U);
  EXPECT_EQ(answers[0], everything);
  EXPECT_EQ(interfaces_->askedPrefixes, std::vector<std::string>{"en"});
}

TEST_F(AdapterIntentHandlerTest, AnswersWhenItIsGoneItself) {
  int answers = 0;
  handler_->provideAdapterOptions({}, [&](const auto&) { ++answers; });
  handler_.reset();
  dispatch_.runReady();
  EXPECT_EQ(answers, 1);
}

TEST_F(AdapterIntentHandlerTest, TheDefaultIsTheAutomaticChoice) {
  std::vector<std::optional<NetworkAdapter>> defaults;
  handler_->defaultAdapter({}, [&](auto adapter) { defaults.push_back(std::move(adapter)); });
  dispatch_.advance(std::chrono::seconds(5));
  EXPECT_EQ(defaults, (std::vector<std::optional<NetworkAdapter>>{automatic}));
}

TEST_F(AdapterIntentHandlerTest, AnAdapterThatIsThereIsASuccessUnderItsPresentName) {
  EXPECT_EQ(resolutionsOf(choosing("en0", "Former name")), std::vector{Result::success(first)});
}

TEST_F(AdapterIntentHandlerTest, TheAutomaticChoiceIsASuccess) {
  EXPECT_EQ(resolutionsOf(choosing("auto", "Automatic")), std::vector{Result::success(automatic)});
}

TEST_F(AdapterIntentHandlerTest, AnAdapterThatHasGoneIsToBeConfirmed) {
  const AdapterConfigurationIntent gone = choosing("en7", "Dock (en7)");
  EXPECT_EQ(resolutionsOf(gone), std::vector{Result::confirmationRequired(gone.adapter)});
}

TEST_F(AdapterIntentHandlerTest, NoAdapterIsAChoiceAmongAll) {
  EXPECT_EQ(resolutionsOf({}), std::vector{Result::disambiguation(everything)});
}

TEST_F(AdapterIntentHandlerTest, AnAdapterKnownByItsDisplayIsASuccessWhenOneIsShownSo) {
  EXPECT_EQ(resolutionsOf(choosing(std::nullopt, "Port (en1)")),
            std::vector{Result::success(second)});
}

TEST_F(AdapterIntentHandlerTest, ADisplayThatNoneHasIsAChoiceAmongAll) {
  EXPECT_EQ(resolutionsOf(choosing(std::nullopt, "Port")),
            std::vector{Result::disambiguation(everything)});
}

TEST_F(AdapterIntentHandlerTest, WithoutAdaptersOnlyTheAutomaticChoiceIsLeft) {
  interfaces_->machine.clear();
  const NetworkAdapter none{.identifier = "auto", .display = "Automatic"};
  EXPECT_EQ(resolutionsOf({}), std::vector{Result::disambiguation({none})});
  EXPECT_EQ(resolutionsOf(choosing("auto", "")), std::vector{Result::success(none)});
}

TEST_F(AdapterIntentHandlerTest, LooksAnewForEveryQuestion) {
  EXPECT_EQ(resolutionsOf(choosing("en0", "")), std::vector{Result::success(first)});
  interfaces_->machine.erase(interfaces_->machine.begin());
  EXPECT_EQ(resolutionsOf(choosing("en0", ""))[0].outcome(), Result::Outcome::confirmationRequired);
}

TEST_F(AdapterIntentHandlerTest, AnyIntentIsReadyAndHandledWithSuccess) {
  std::vector<AdapterConfigurationIntentResponse> responses;
  const auto collect = [&](auto response) { responses.push_back(response); };
  handler_->confirm(choosing("en7", "Dock"), collect);
  handler_->handle({}, collect);
  EXPECT_EQ(responses, (std::vector<AdapterConfigurationIntentResponse>{
                           {.code = AdapterConfigurationIntentResponseCode::ready},
                           {.code = AdapterConfigurationIntentResponseCode::success}}));
}

TEST(AdapterIntentHandlerDeathTest, NeedsWhatItAsks) {
  const FakeStringTable strings;
  EXPECT_DEATH(AdapterIntentHandler(nullptr, nullptr, strings), "without what it asks");
}

}  // namespace
}  // namespace lanternfold
