#include <limits>

#include "NetworkMonitor/PublicInfo/PublicInfoResolverError.h"
#include "NetworkMonitor/PublicInfo/StandardInternetInfoResolver.h"
#include "Platform/UrlError.h"
#include "Tests/Support/FakeConnectionMetricsReader.h"
#include "Tests/Support/FakePublicInfoResolver.h"
#include "Tests/Support/NetBaseEnvironment.h"
#include "Tests/Support/SampleConnectionMetrics.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

using enum PublicInfoKey;
using Answer = PublicInfoResolver::Answer;
using Keys = PublicInfoResolver::Keys;

struct Report {
  InternetInfo info;
  bool complete = false;
  std::error_code error;
};

class StandardInternetInfoResolverTest : public testing::Test {
 protected:
  StandardInternetInfoResolverTest() {
    net_.resolver.setServers({{IPv4Bytes{192, 0, 2, 53}, IPv6Bytes{0x20, 0x01, 0x0D, 0xB8, 0, 0, 0,
                                                                   0, 0, 0, 0, 0, 0, 0, 0, 0x53}}});
  }

  std::shared_ptr<StandardInternetInfoResolver> make(
      std::vector<PublicInfoResolverConfiguration> configurations) {
    return std::make_shared<StandardInternetInfoResolver>(
        std::move(configurations), reader_,
        StandardInternetInfoResolver::Environment{dispatch_.mainQueue(), naming(), net_.netUtils});
  }
  virtual const InterfaceNaming& naming() { return net_.naming; }

  InternetInfoResolver::UpdateHandler reporter() {
    return [this](const InternetInfo& info, bool complete, std::error_code error) {
      EXPECT_TRUE(dispatch_.mainQueue().isCurrent());
      reports_.push_back({info, complete, error});
    };
  }
  /// Of all resolvers' answers at once.
  InternetInfo resolved(std::vector<PublicInfoResolverConfiguration> configurations) {
    reports_.clear();
    make(std::move(configurations))->resolve(reporter());
    dispatch_.runReady();
    return reports_.empty() ? InternetInfo() : reports_.back().info;
  }
  static PublicInfoResolverConfiguration answering(PublicInfo answer) {
    return {std::make_shared<FakePublicInfoResolver>(std::move(answer)), {}};
  }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  NetBaseEnvironment net_;
  const std::shared_ptr<FakeConnectionMetricsReader> reader_ =
      std::make_shared<FakeConnectionMetricsReader>();
  std::vector<Report> reports_;
};

TEST_F(StandardInternetInfoResolverTest, BeginsWithAnActiveRecordThatKnowsTheDnsServers) {
  const InternetInfo info = resolved({});
  InternetInfo expected;
  expected.active = true;
  expected.displayName = "Internet";
  expected.dns = {"192.0.2.53", "2001:db8::53"};
  EXPECT_EQ(info, expected);
}

TEST_F(StandardInternetInfoResolverTest, WithoutResolversThereIsOneReport) {
  make({})->resolve(reporter());
  EXPECT_TRUE(reports_.empty()) << "a report did not come through the main queue";
  dispatch_.runReady();
  ASSERT_EQ(reports_.size(), 1U);
  EXPECT_TRUE(reports_[0].complete);
}

TEST_F(StandardInternetInfoResolverTest, EveryAnswerIsMerged) {
  const InternetInfo info =
      resolved({answering({{ip, "203.0.113.7"}, {isp, "Example Net"}}),
                answering({{supportsIp6, false}}), answering({{interface, BasicInterface()}})});
  EXPECT_EQ(info.ip, "203.0.113.7");
  EXPECT_EQ(info.isp, "Example Net");
  EXPECT_EQ(info.supportsIPv6, false);
  EXPECT_EQ(info.interface, BasicInterface());
}

TEST_F(StandardInternetInfoResolverTest, AnAddressThatComesAloneMeansThatThereIsIPv6) {
  EXPECT_EQ(resolved({answering({{ip6, "2001:db8::7"}})}).supportsIPv6, true);
}

TEST_F(StandardInternetInfoResolverTest, ThereIsNeverIPv6WithoutAnAddress) {
  EXPECT_EQ(resolved({answering({{supportsIp6, true}})}).supportsIPv6, std::nullopt);
}

TEST_F(StandardInternetInfoResolverTest, AskedTwiceAResolutionBeginsAnew) {
  const auto echo = std::make_shared<FakePublicInfoResolver>(PublicInfo{{ip, "203.0.113.7"}});
  const auto resolver = make({{echo, {ip}}});
  resolver->resolve(reporter());
  dispatch_.runReady();
  echo->setAnswer(PublicInfo{});
  resolver->resolve(reporter());
  dispatch_.runReady();
  ASSERT_EQ(reports_.size(), 4U);
  EXPECT_EQ(reports_[1].info.ip, "203.0.113.7");
  EXPECT_EQ(reports_[3].info.ip, std::nullopt);
}

/// Three configurations, which the test answers when it likes.
class ThreeResolversTest : public StandardInternetInfoResolverTest {
 protected:
  ThreeResolversTest() {
    resolver_ = make(
        {{geolocation_, {isp, country, ip}}, {echo6_, {ip6, supportsIp6}}, {active_, {interface}}});
    resolver_->resolve(reporter());
  }

  /// "incomplete", with the address families known, or "complete", for each report.
  std::vector<std::string> told() {
    dispatch_.runReady();
    std::vector<std::string> lines;
    for (const Report& report : reports_) {
      std::string line = report.complete ? "complete" : "incomplete";
      if (report.info.ip) line += " ip";
      if (report.info.ipv6) line += " ip6";
      if (report.info.interface) line += " interface";
      if (report.error) line += ": " + report.error.message();
      lines.push_back(std::move(line));
    }
    return lines;
  }
  using Lines = std::vector<std::string>;

  const std::shared_ptr<FakePublicInfoResolver> geolocation_ =
      std::make_shared<FakePublicInfoResolver>();
  const std::shared_ptr<FakePublicInfoResolver> echo6_ = std::make_shared<FakePublicInfoResolver>();
  const std::shared_ptr<FakePublicInfoResolver> active_ =
      std::make_shared<FakePublicInfoResolver>();
  std::shared_ptr<StandardInternetInfoResolver> resolver_;
};

TEST_F(ThreeResolversTest, AllAreAskedAtOnceForTheirOwnKeys) {
  EXPECT_EQ(geolocation_->askedKeys(), (std::vector<Keys>{{isp, country, ip}}));
  EXPECT_EQ(echo6_->askedKeys(), (std::vector<Keys>{{ip6, supportsIp6}}));
  EXPECT_EQ(active_->askedKeys(), (std::vector<Keys>{{interface}}));
}

TEST_F(ThreeResolversTest, TheHandlerIsCalledFourTimesInTheOrderOfTheAnswers) {
  EXPECT_EQ(told(), Lines{});
  active_->complete(0, PublicInfo{{interface, BasicInterface()}});
  EXPECT_EQ(told(), (Lines{"incomplete interface"}));
  geolocation_->complete(0, PublicInfo{{ip, "203.0.113.7"}});
  EXPECT_EQ(told(), (Lines{"incomplete interface", "incomplete ip interface"}));
  echo6_->complete(0, PublicInfo{{ip6, "2001:db8::7"}});
  EXPECT_EQ(told(), (Lines{"incomplete interface", "incomplete ip interface",
                           "incomplete ip ip6 interface", "complete ip ip6 interface"}));
  dispatch_.advance(std::chrono::hours(1));
  EXPECT_EQ(reports_.size(), 4U);
}

TEST_F(ThreeResolversTest, AFailingResolverStillCounts) {
  geolocation_->complete(0, std::unexpected(make_error_code(UrlErrorCode::timedOut)));
  echo6_->complete(0, PublicInfo{{ip6, "2001:db8::7"}});
  active_->complete(0, std::unexpected(make_error_code(PublicInfoResolverError::timeout)));
  EXPECT_EQ(told(), (Lines{"incomplete: the request timed out", "incomplete ip6",
                           "incomplete ip6: the answer took too long", "complete ip6"}));
}

TEST_F(ThreeResolversTest, AnEmptyAnswerIsReportedToo) {
  for (const auto& each : {geolocation_, echo6_, active_}) each->complete(0, PublicInfo{});
  EXPECT_EQ(told(), (Lines{"incomplete", "incomplete", "incomplete", "complete"}));
}

TEST_F(ThreeResolversTest, WhileOneIsOutNothingIsComplete) {
  geolocation_->complete(0, PublicInfo{});
  active_->complete(0, PublicInfo{});
  dispatch_.advance(std::chrono::hours(1));
  EXPECT_EQ(told(), (Lines{"incomplete", "incomplete"}));
}

TEST_F(ThreeResolversTest, ADroppedCompositionStillReports) {
  resolver_.reset();
  for (const auto& each : {geolocation_, echo6_, active_}) each->complete(0, PublicInfo{});
  EXPECT_EQ(told().size(), 4U);
}

TEST_F(ThreeResolversTest, AnswersOfBackgroundQueuesAreMergedOnTheMainQueue) {
  auto& background = dispatch_.globalQueue(QualityOfService::utility);
  background.async([this] { geolocation_->complete(0, PublicInfo{{ip, "203.0.113.7"}}); });
  background.async([this] { echo6_->complete(0, PublicInfo{{ip6, "2001:db8::7"}}); });
  background.async([this] { active_->complete(0, PublicInfo{}); });
  EXPECT_EQ(told().size(), 4U);
  EXPECT_EQ(told().back(), "complete ip ip6");
}

TEST_F(ThreeResolversTest, TwoResolutionsAtOnceDoNotMix) {
  resolver_->resolve(reporter());
  for (const auto& each : {geolocation_, echo6_, active_}) each->complete(1, PublicInfo{});
  EXPECT_EQ(told(), (Lines{"incomplete", "incomplete", "incomplete", "complete"}));
  for (const auto& each : {geolocation_, echo6_})
    each->complete(0, PublicInfo{{ip, "203.0.113.7"}});
  EXPECT_EQ(told().back(), "incomplete ip");
}

TEST_F(ThreeResolversTest, NothingIsHeldAfterTheLastReport) {
  auto held = std::make_shared<int>();
  const std::weak_ptr<int> weak = held;
  resolver_->resolve(
      [held = std::exchange(held, nullptr)](const InternetInfo&, bool, std::error_code) {});
  for (const auto& each : {geolocation_, echo6_, active_}) each->complete(1, PublicInfo{});
  EXPECT_FALSE(weak.expired());
  dispatch_.runReady();
  EXPECT_TRUE(weak.expired());
}

class InternetMetricsTest : public StandardInternetInfoResolverTest {
 protected:
  ConnectionMetrics sum() { return resolved({}).metrics; }
};

TEST_F(InternetMetricsTest, AreTheSumsOverAdaptersAndCellularInterfaces) {
  for (const char* name : {"en0", "en7", "pdp_ip0"}) reader_->set(name, oneToEight);
  EXPECT_EQ(sum(), (ConnectionMetrics{.sentBytes = 3,
                                      .recvBytes = 6,
                                      .sentError = 9,
                                      .recvError = 12,
                                      .sentPacket = 15,
                                      .recvPacket = 18,
                                      .collisions = 21,
                                      .mtu = 0}));
}

TEST_F(InternetMetricsTest, LeaveOutEveryOtherInterface) {
  for (const char* name :
       {"lo", "lo0", "utun0", "bridge0", "ppp0", "pdp", "pdp_i", "e", "aen0", "EN0", "awdl0"}) {
    reader_->set(name, oneToEight);
  }
  EXPECT_EQ(sum(), ConnectionMetrics::empty());
}

TEST_F(InternetMetricsTest, OfAFailingReaderAreZero) {
  reader_->set("en0", oneToEight);
  reader_->setFailing(true);
  EXPECT_EQ(sum(), ConnectionMetrics::empty());
}

TEST_F(InternetMetricsTest, HaveNoMtu) {
  reader_->set("en0", ConnectionMetrics::initial(1500));
  reader_->set("en1", ConnectionMetrics::initial(9000));
  EXPECT_EQ(sum().mtu, 0U);
}

TEST_F(InternetMetricsTest, AreReadOnceForAResolution) {
  static_cast<void>(sum());
  EXPECT_EQ(reader_->readCount(), 1U);
}

TEST_F(InternetMetricsTest, ReachTheLargestNumber) {
  constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
  reader_->set("en0", {.sentBytes = largest - 1});
  reader_->set("en1", {.sentBytes = 1});
  EXPECT_EQ(sum().sentBytes, largest);
}

using InternetMetricsDeathTest = InternetMetricsTest;

TEST_F(InternetMetricsDeathTest, ASumBeyondTheLargestNumberStopsTheProgram) {
  reader_->set("en0", {.recvPacket = std::numeric_limits<std::uint64_t>::max()});
  reader_->set("en1", {.recvPacket = 1});
  EXPECT_DEATH(static_cast<void>(sum()), "a sum of counters exceeds the range");
}

TEST_F(InternetMetricsTest, AnOverflowOfAnInterfaceThatIsLeftOutIsNone) {
  reader_->set("en0", {.recvPacket = std::numeric_limits<std::uint64_t>::max()});
  reader_->set("lo", {.recvPacket = 1});
  EXPECT_EQ(sum().recvPacket, std::numeric_limits<std::uint64_t>::max());
}

/// Takes "wlan0" for an adapter and "wwan0" for a cellular interface, and both for "both0".
class WideNaming final : public InterfaceNaming {
 public:
  [[nodiscard]] std::function<bool(std::string_view name)> matcher(
      std::string_view prefix) const override {
    ++matchers;
    return [name = prefix == "en" ? "wlan0" : "wwan0"](std::string_view asked) {
      return asked == name || asked == "both0";
    };
  }
  mutable int matchers = 0;
};

class WideNamingTest : public InternetMetricsTest {
 protected:
  const InterfaceNaming& naming() override { return naming_; }

  WideNaming naming_;
};

TEST_F(WideNamingTest, DecidesWhatCounts) {
  for (const char* name : {"wlan0", "wwan0", "eth0"}) reader_->set(name, oneToEight);
  EXPECT_EQ(sum().sentBytes, 2U);
  EXPECT_EQ(naming_.matchers, 2) << "the system was looked at more than once for a family";
}

TEST_F(WideNamingTest, AnInterfaceOfBothFamiliesCountsOnce) {
  reader_->set("both0", oneToEight);
  EXPECT_EQ(sum().sentBytes, 1U);
}

class StandardInternetInfoResolverDeathTest : public ThreeResolversTest {};

TEST_F(StandardInternetInfoResolverDeathTest, ASecondCompletionStopsTheProgram) {
  PublicInfoResolver::Completion completion = std::move(geolocation_->completion(0));
  completion(PublicInfo{});
  EXPECT_DEATH(completion(PublicInfo{}), "a public-info resolver completed twice");
}

TEST_F(StandardInternetInfoResolverDeathTest, NeedsItsReaderAndItsResolvers) {
  const char* sentence =
      "an internet info resolver was made without a counter reader or a resolver";
  EXPECT_DEATH(make({{nullptr, {ip}}}), sentence);
  EXPECT_DEATH(StandardInternetInfoResolver({}, nullptr,
                                            {dispatch_.mainQueue(), net_.naming, net_.netUtils}),
               sentence);
}

}  // namespace
}  // namespace lanternfold
