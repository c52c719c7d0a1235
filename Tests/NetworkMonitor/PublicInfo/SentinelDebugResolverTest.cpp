#include "NetworkMonitor/PublicInfo/SentinelDebugResolver.h"
#include "Tests/NetworkMonitor/PublicInfo/RestResolverTest.h"
#include "Tests/Support/FakeUserDefaults.h"

namespace lanternfold {
namespace {

class SentinelDebugResolverTest : public RestResolverTest {
 protected:
  std::shared_ptr<SentinelDebugResolver> makeResolver(const SentinelSettings& settings = {}) {
    return make<SentinelDebugResolver>(userDefaults_, settings);
  }
  static std::string urlOf(const std::string& identifier) {
    return "https://sentinel.example/lanternfold/sentinel.php?deviceId=" + identifier +
           "&simulator=false&mode=release";
  }
  std::optional<PropertyListValue> stored() const {
    return userDefaults_->object("SentinelDebugResolverDeviceID").value();
  }

  const std::shared_ptr<FakeUserDefaults> userDefaults_ = std::make_shared<FakeUserDefaults>();
};

TEST_F(SentinelDebugResolverTest, SupportsNoKeys) {
  EXPECT_TRUE(makeResolver()->supportedKeys().empty());
}

TEST_F(SentinelDebugResolverTest, TellsTheStoredIdentifier) {
  userDefaults_->set("SentinelDebugResolverDeviceID", "DEVICE-7");
  EXPECT_EQ(makeResolver()->apiUrl(), urlOf("DEVICE-7"));
  EXPECT_EQ(stored(), PropertyListValue("DEVICE-7"));
}

TEST_F(SentinelDebugResolverTest, WithoutOneMakesAndStoresARandomUuid) {
  const std::string url = makeResolver()->apiUrl();
  const std::optional<PropertyListValue> value = stored();
  ASSERT_TRUE(value.has_value());
  const std::string* identifier = value->asString();
  ASSERT_NE(identifier, nullptr);
  EXPECT_THAT(*identifier,
              testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-"
                                    "[0-9A-F]{12}"));
  EXPECT_EQ(url, urlOf(*identifier));
}

TEST_F(SentinelDebugResolverTest, TheIdentifierStaysTheSame) {
  const std::string url = makeResolver()->apiUrl();
  EXPECT_EQ(makeResolver()->apiUrl(), url);
}

TEST_F(SentinelDebugResolverTest, AnotherMachineHasAnotherIdentifier) {
  const auto other =
      make<SentinelDebugResolver>(std::make_shared<FakeUserDefaults>(), SentinelSettings{});
  EXPECT_NE(makeResolver()->apiUrl(), other->apiUrl());
}

TEST_F(SentinelDebugResolverTest, AnIdentifierThatIsNoTextIsReplaced) {
  userDefaults_->set("SentinelDebugResolverDeviceID", 7);
  const std::string url = makeResolver()->apiUrl();
  const std::optional<PropertyListValue> value = stored();
  ASSERT_TRUE(value.has_value());
  ASSERT_NE(value->asString(), nullptr);
  EXPECT_EQ(url, urlOf(*value->asString()));
}

TEST_F(SentinelDebugResolverTest, AnIdentifierThatCannotBeReadIsNotOverwritten) {
  userDefaults_->set("SentinelDebugResolverDeviceID", "DEVICE-7");
  userDefaults_->setDiskUnreadable(true);
  EXPECT_NE(makeResolver()->apiUrl(), urlOf("DEVICE-7"));
  userDefaults_->setDiskUnreadable(false);
  EXPECT_EQ(makeResolver()->apiUrl(), urlOf("DEVICE-7"));
}

TEST_F(SentinelDebugResolverTest, AnIdentifierThatCannotBeWrittenServesThisProgram) {
  userDefaults_->setDiskFailing(true);
  const std::string url = makeResolver()->apiUrl();
  EXPECT_EQ(makeResolver()->apiUrl(), url);
}

TEST_F(SentinelDebugResolverTest, TellsTheModeItIsMadeWith) {
  userDefaults_->set("SentinelDebugResolverDeviceID", "DEVICE-7");
  EXPECT_THAT(makeResolver({.sentinelMode = "debug"})->apiUrl(), testing::EndsWith("&mode=debug"));
}

TEST_F(SentinelDebugResolverTest, TheAnswerIsNotLookedAt) {
  userDefaults_->set("SentinelDebugResolverDeviceID", "DEVICE-7");
  sessions_.answer(urlOf("DEVICE-7"), "anything");
  EXPECT_EQ(answerOf(makeResolver(), {PublicInfoKey::ip}), PublicInfo{});
  EXPECT_EQ(sessions_.requestedUrls(), (std::vector{urlOf("DEVICE-7")}));
}

TEST_F(SentinelDebugResolverTest, AnErrorIsPassedOn) {
  userDefaults_->set("SentinelDebugResolverDeviceID", "DEVICE-7");
  sessions_.fail(urlOf("DEVICE-7"), UrlErrorCode::cannotConnectToHost);
  EXPECT_EQ(answerOf(makeResolver(), {}), failed(UrlErrorCode::cannotConnectToHost));
}

using SentinelDebugResolverDeathTest = SentinelDebugResolverTest;

TEST_F(SentinelDebugResolverDeathTest, NeedsUserDefaults) {
  EXPECT_DEATH(make<SentinelDebugResolver>(std::shared_ptr<UserDefaults>(), SentinelSettings{}),
               "a sentinel resolver was made without user defaults");
}

}  // namespace
}  // namespace lanternfold
