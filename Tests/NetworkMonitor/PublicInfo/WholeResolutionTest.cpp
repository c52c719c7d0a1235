// Every resolver of the public side together, over servers, a path and settings of a test.
#include "NetworkMonitor/PublicInfo/ActiveInterfacePublicInfoResolver.h"
#include "NetworkMonitor/PublicInfo/CachedPublicInfoResolver.h"
#include "NetworkMonitor/PublicInfo/IpApiPublicInfoResolver.h"
#include "NetworkMonitor/PublicInfo/QuernapleIp6Resolver.h"
#include "NetworkMonitor/PublicInfo/QuernapleIpResolver.h"
#include "NetworkMonitor/PublicInfo/StandardInternetInfoResolver.h"
#include "Tests/NetworkMonitor/PublicInfo/RestResolverTest.h"
#include "Tests/Support/FakeConnectionMetricsReader.h"
#include "Tests/Support/FakePathMonitor.h"
#include "Tests/Support/FakeResolvers.h"
#include "Tests/Support/FakeUserDefaults.h"
#include "Tests/Support/NetBaseEnvironment.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using enum PublicInfoKey;

class WholeResolutionTest : public RestResolverTest {
 protected:
  WholeResolutionTest() {
    BasicInterface en0;
    en0.name = "en0";
    interfaces_->machine = {en0};
    paths_.deliver({.status = PathStatus::satisfied,
                    .availableInterfaces = {
                        {.name = "en0", .index = 2, .type = PathInterfaceType::wiredEthernet}}});
  }

  std::shared_ptr<StandardInternetInfoResolver> makeComposition() {
    const auto cached = std::make_shared<CachedPublicInfoResolver>(
        make<QuernapleIpResolver>(), make<IpApiPublicInfoResolver>(), userDefaults_, clock_);
    const auto active = std::make_shared<ActiveInterfacePublicInfoResolver>(
        interfaces_, ActiveInterfacePublicInfoResolver::Environment{paths_, dispatch_.mainQueue()});
    return std::make_shared<StandardInternetInfoResolver>(
        std::vector<PublicInfoResolverConfiguration>{
            {cached, {isp, country, ip}},
            {make<QuernapleIp6Resolver>(), {ip6, supportsIp6}},
            {active, {interface}}},
        std::make_shared<FakeConnectionMetricsReader>(),
        StandardInternetInfoResolver::Environment{dispatch_.mainQueue(), net_.naming,
                                                  net_.netUtils});
  }

  void answerAll(std::chrono::nanoseconds delay) {
    sessions_.answer(ipv4EchoUrl, R"({"ip":"203.0.113.7"})", delay);
    sessions_.answer(ipv6EchoUrl, R"({"ip":"2001:db8::7"})", delay);
    sessions_.answer(geolocationUrl,
                     R"({"isp":"Example Net","countryCode":"IT","as":"","query":"203.0.113.7"})",
                     delay);
  }

  /// Runs a resolution to its complete report.
  void run() {
    reports_ = 0;
    const auto begin = clock_.steadyNow();
    isComplete_ = false;
    const auto composition = makeComposition();
    composition->resolve([this](const InternetInfo& info, bool complete, std::error_code) {
      info_ = info;
      ++reports_;
      isComplete_ = complete;
    });
    EXPECT_TRUE(dispatch_.runUntil([this] { return isComplete_; }, 1h));
    duration_ = clock_.steadyNow() - begin;
  }

  FakePathMonitorFactory paths_;
  NetBaseEnvironment net_;
  const std::shared_ptr<FakeInterfaceResolver> interfaces_ =
      std::make_shared<FakeInterfaceResolver>();
  const std::shared_ptr<FakeUserDefaults> userDefaults_ = std::make_shared<FakeUserDefaults>();
  InternetInfo info_;
  int reports_ = 0;
  bool isComplete_ = false;
  std::chrono::nanoseconds duration_{0};
};

TEST_F(WholeResolutionTest, KnowsEverything) {
  answerAll(0s);
  run();
  EXPECT_EQ(reports_, 4);
  EXPECT_EQ(info_.ip, "203.0.113.7");
  EXPECT_EQ(info_.ipv6, "2001:db8::7");
  EXPECT_EQ(info_.supportsIPv6, true);
  EXPECT_EQ(info_.isp, "Example Net");
  EXPECT_EQ(info_.country, "IT");
  ASSERT_TRUE(info_.interface.has_value());
  EXPECT_EQ(info_.interface->type, InterfaceType::ethernet);
}

TEST_F(WholeResolutionTest, TakesAsLongAsTheLongestChain) {
  answerAll(4s);
  run();
  EXPECT_EQ(duration_, 8s) << "the address, then the provider; the others beside them";
  EXPECT_EQ(info_.country, "IT");
}

TEST_F(WholeResolutionTest, WithAllServicesSilentTakesTwoSilences) {
  for (const char* url : {ipv4EchoUrl, ipv6EchoUrl, geolocationUrl}) sessions_.neverAnswer(url);
  run();
  EXPECT_EQ(duration_, 10s);
  EXPECT_EQ(info_.ip, std::nullopt);
  EXPECT_EQ(info_.supportsIPv6, false);
}

TEST_F(WholeResolutionTest, WithoutAWayOutEndsAtOnce) {
  paths_.deliver({});
  for (const char* url : {ipv4EchoUrl, ipv6EchoUrl, geolocationUrl}) {
    sessions_.fail(url, UrlErrorCode::cannotConnectToHost);
  }
  run();
  EXPECT_EQ(duration_, 0s);
  EXPECT_EQ(info_.ip, std::nullopt);
  EXPECT_EQ(info_.interface, std::nullopt);
}

TEST_F(WholeResolutionTest, WithoutIPv4NeedsTheGeolocationServiceAlone) {
  answerAll(0s);
  sessions_.fail(ipv4EchoUrl, UrlErrorCode::cannotFindHost);
  run();
  EXPECT_EQ(info_.ip, "203.0.113.7");
  EXPECT_EQ(info_.isp, "Example Net");
}

TEST_F(WholeResolutionTest, OfManyWithinThreeDaysOneAsksTheGeolocationService) {
  answerAll(0s);
  for (int hour = 0; hour < 72; ++hour) {
    run();
    EXPECT_EQ(info_.isp, "Example Net");
    clock_.advance(1h);
  }
  EXPECT_EQ(std::ranges::count(sessions_.requestedUrls(), geolocationUrl), 1);
  run();
  EXPECT_EQ(std::ranges::count(sessions_.requestedUrls(), geolocationUrl), 2);
}

TEST_F(WholeResolutionTest, LeavesNothingBehind) {
  answerAll(1s);
  for (int round = 0; round < 100; ++round) run();
  dispatch_.advance(1min);
  EXPECT_EQ(sessions_.tasksUnderWay(), 0U);
  EXPECT_EQ(dispatch_.waitingWorks(), 0U);
  for (const auto& monitor : paths_.monitors()) EXPECT_TRUE(monitor->destroyed);
}

TEST_F(WholeResolutionTest, ASecondResolutionCancelsTheQuestionsOfTheFirst) {
  answerAll(1s);
  const auto composition = makeComposition();
  std::vector<std::string> errors;
  composition->resolve([&errors](const InternetInfo&, bool, std::error_code error) {
    if (error) errors.push_back(error.message());
  });
  dispatch_.advance(500ms);
  InternetInfo info;
  int reports = 0;
  composition->resolve([&](const InternetInfo& each, bool, std::error_code error) {
    EXPECT_EQ(error, std::error_code());
    info = each;
    ++reports;
  });
  dispatch_.advance(1h);
  EXPECT_EQ(errors,
            (std::vector<std::string>{"the request was cancelled", "the request was cancelled"}));
  EXPECT_EQ(reports, 4);
  EXPECT_EQ(info.isp, "Example Net");
  EXPECT_EQ(info.ipv6, "2001:db8::7");
}

}  // namespace
}  // namespace lanternfold
