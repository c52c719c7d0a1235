#include "NetworkMonitor/PublicInfo/CachedPublicInfoResolver.h"
#include "NetworkMonitor/PublicInfo/PublicInfoResolverError.h"
#include "Platform/UrlError.h"
#include "Tests/Support/FakePublicInfoResolver.h"
#include "Tests/Support/FakeUserDefaults.h"
#include "Tests/Support/SimulatedClock.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using enum PublicInfoKey;
using Answer = PublicInfoResolver::Answer;
using Keys = PublicInfoResolver::Keys;

/// Writes down what is changed, in order.
class WatchedUserDefaults final : public UserDefaults {
 public:
  [[nodiscard]] Look object(std::string_view key) const override { return inner.object(key); }
  void set(std::string_view key, PropertyListValue value) override {
    changes.emplace_back(key);
    inner.set(key, std::move(value));
  }
  void remove(std::string_view key) override { inner.remove(key); }
  [[nodiscard]] std::expected<void, UserDefaultsError> synchronize() override {
    changes.emplace_back("synchronize");
    return inner.synchronize();
  }

  FakeUserDefaults inner;
  std::vector<std::string> changes;
};

class CachedPublicInfoResolverTest : public testing::Test {
 protected:
  static constexpr const char* storage = "CachedPublicInfoStorage";
  static constexpr const char* date = "CachedPublicInfoDate";

  std::shared_ptr<CachedPublicInfoResolver> makeResolver() {
    return std::make_shared<CachedPublicInfoResolver>(ipResolver_, resolver_, userDefaults_,
                                                      clock_);
  }

  Answer answer(Keys keys = {isp, country, ip}) {
    std::vector<Answer> answers;
    makeResolver()->resolve(std::move(keys),
                            [&](Answer each) { answers.push_back(std::move(each)); });
    EXPECT_EQ(answers.size(), 1U);
    return answers.empty() ? std::unexpected(std::error_code()) : answers.front();
  }

  /// What an earlier program stored, and how long ago.
  void storeEntries(PropertyListValue values, std::chrono::nanoseconds age) {
    userDefaults_->inner.set(storage, std::move(values));
    userDefaults_->inner.set(
        date,
        std::chrono::time_point_cast<std::chrono::system_clock::duration>(clock_.now() - age));
  }
  void storeAnswer(std::chrono::nanoseconds age) {
    storeEntries(
        PropertyListDictionary{{"ip", "203.0.113.7"}, {"isp", "Stored Net"}, {"country", "DE"}},
        age);
  }

  bool isHit() { return answer() == stored_; }

  static constexpr std::chrono::seconds threeDays{259'200};

  const PublicInfo fresh_{{ip, "203.0.113.7"}, {isp, "Fresh Net"}, {country, "IT"}};
  const PublicInfo stored_{{ip, "203.0.113.7"}, {isp, "Stored Net"}, {country, "DE"}};
  SimulatedClock clock_;
  const std::shared_ptr<FakePublicInfoResolver> ipResolver_ =
      std::make_shared<FakePublicInfoResolver>(PublicInfo{{ip, "203.0.113.7"}});
  const std::shared_ptr<FakePublicInfoResolver> resolver_ =
      std::make_shared<FakePublicInfoResolver>(fresh_);
  const std::shared_ptr<WatchedUserDefaults> userDefaults_ =
      std::make_shared<WatchedUserDefaults>();
};

TEST_F(CachedPublicInfoResolverTest, SupportsAddressProviderAndCountry) {
  EXPECT_EQ(makeResolver()->supportedKeys(), (Keys{ip, isp, country}));
}

TEST_F(CachedPublicInfoResolverTest, AsksForTheAddressAloneAndThenForTheRequestedKeys) {
  EXPECT_EQ(answer({isp, country, ip}), fresh_);
  EXPECT_EQ(ipResolver_->askedKeys(), (std::vector<Keys>{{ip}}));
  EXPECT_EQ(resolver_->askedKeys(), (std::vector<Keys>{{isp, country, ip}}));
}

TEST_F(CachedPublicInfoResolverTest, StoresTheAnswerAndItsDateAndSynchronisesOnce) {
  static_cast<void>(answer());
  EXPECT_EQ(userDefaults_->changes, (std::vector<std::string>{storage, date, "synchronize"}));
  EXPECT_EQ(userDefaults_->object(storage).value(),
            PropertyListValue(PropertyListDictionary{
                {"ip", "203.0.113.7"}, {"isp", "Fresh Net"}, {"country", "IT"}}));
  EXPECT_EQ(userDefaults_->object(date).value(), PropertyListValue(clock_.now()));
}

TEST_F(CachedPublicInfoResolverTest, ASecondRequestAsksForTheAddressAlone) {
  static_cast<void>(answer());
  clock_.advance(1h);
  EXPECT_EQ(answer(), fresh_);
  EXPECT_EQ(ipResolver_->askedKeys().size(), 2U);
  EXPECT_EQ(resolver_->askedKeys().size(), 1U);
}

TEST_F(CachedPublicInfoResolverTest, AHitStoresNothing) {
  storeAnswer(1h);
  EXPECT_TRUE(isHit());
  EXPECT_TRUE(userDefaults_->changes.empty());
}

TEST_F(CachedPublicInfoResolverTest, AHitAnswersAllStoredValues) {
  storeAnswer(1h);
  EXPECT_EQ(answer({country}), stored_);
}

TEST_F(CachedPublicInfoResolverTest, AnAnswerIsKeptForThreeDaysToTheSecond) {
  storeAnswer(threeDays - 1s);
  EXPECT_TRUE(isHit());
  storeAnswer(threeDays);
  EXPECT_FALSE(isHit());
}

TEST_F(CachedPublicInfoResolverTest, AnUnchangedAddressOlderThanThreeDaysMisses) {
  storeAnswer(threeDays + 1s);
  EXPECT_EQ(answer(), fresh_);
  EXPECT_EQ(userDefaults_->object(date).value(), PropertyListValue(clock_.now()));
}

TEST_F(CachedPublicInfoResolverTest, AChangeOfTheAddressMissesWithinThreeDays) {
  storeAnswer(1s);
  ipResolver_->setAnswer(PublicInfo{{ip, "203.0.113.8"}});
  const PublicInfo moved{{ip, "203.0.113.8"}, {isp, "Other Net"}, {country, "FR"}};
  resolver_->setAnswer(moved);
  EXPECT_EQ(answer(), moved);
  EXPECT_EQ(answer(), moved);
  EXPECT_EQ(resolver_->askedKeys().size(), 1U) << "the answer at the new address was not kept";
}

TEST_F(CachedPublicInfoResolverTest, ADateInTheFutureMisses) {
  storeAnswer(0s);
  EXPECT_TRUE(isHit());
  storeAnswer(-1s);
  EXPECT_FALSE(isHit());
}

TEST_F(CachedPublicInfoResolverTest, ADateAtEitherEndOfTimeMisses) {
  for (const auto moment : {PropertyListValue::Date::min(), PropertyListValue::Date::max()}) {
    storeAnswer(0s);
    userDefaults_->inner.set(date, moment);
    EXPECT_FALSE(isHit());
  }
}

TEST_F(CachedPublicInfoResolverTest, AClockSetBackMakesTheDateOneOfTheFuture) {
  static_cast<void>(answer());
  clock_.stepWallClock(-1s);
  static_cast<void>(answer());
  EXPECT_EQ(resolver_->askedKeys().size(), 2U);
}

TEST_F(CachedPublicInfoResolverTest, ADateOfAnotherTypeMisses) {
  for (const PropertyListValue& wrong :
       {PropertyListValue("2024-01-01"), PropertyListValue(725'760'000)}) {
    storeAnswer(0s);
    userDefaults_->inner.set(date, wrong);
    EXPECT_FALSE(isHit());
  }
}

TEST_F(CachedPublicInfoResolverTest, AMissingDateMisses) {
  storeAnswer(0s);
  userDefaults_->inner.remove(date);
  EXPECT_FALSE(isHit());
}

TEST_F(CachedPublicInfoResolverTest, AStorageOfAnotherTypeMisses) {
  for (const PropertyListValue& wrong :
       {PropertyListValue("203.0.113.7"), PropertyListValue(7),
        PropertyListValue(PropertyListValue::Data{std::byte{1}})}) {
    storeEntries(wrong, 1h);
    EXPECT_EQ(answer(), fresh_);
  }
}

TEST_F(CachedPublicInfoResolverTest, AStoredValueOfAnotherTypeMisses) {
  storeEntries(PropertyListDictionary{{"ip", "203.0.113.7"}, {"isp", 7}, {"country", "DE"}}, 1h);
  EXPECT_EQ(answer(), fresh_);
}

TEST_F(CachedPublicInfoResolverTest, AStoredAddressOfAnotherTypeMisses) {
  storeEntries(PropertyListDictionary{{"ip", 7}, {"isp", "Stored Net"}}, 1h);
  EXPECT_EQ(answer(), fresh_);
}

TEST_F(CachedPublicInfoResolverTest, AStoredAnswerWithoutAnAddressNeverHits) {
  storeEntries(PropertyListDictionary{{"isp", "Stored Net"}, {"country", "DE"}}, 1h);
  EXPECT_EQ(answer(), fresh_);
  ipResolver_->setAnswer(PublicInfo{});
  storeEntries(PropertyListDictionary{{"isp", "Stored Net"}, {"country", "DE"}}, 1h);
  EXPECT_EQ(answer(), fresh_);
}

TEST_F(CachedPublicInfoResolverTest, AStoredKeyThatIsNoneIsLeftOut) {
  storeEntries(PropertyListDictionary{{"ip", "203.0.113.7"},
                                      {"weather", "fair"},
                                      {"supportsIp6", "true"},
                                      {"interface", "en0"},
                                      {"country", "DE"}},
               1h);
  EXPECT_EQ(answer(), (PublicInfo{{ip, "203.0.113.7"}, {country, "DE"}}));
}

TEST_F(CachedPublicInfoResolverTest, EntriesThatCannotBeReadMiss) {
  storeAnswer(1h);
  userDefaults_->inner.setDiskUnreadable(true);
  EXPECT_EQ(answer(), fresh_);
}

TEST_F(CachedPublicInfoResolverTest, EntriesThatCannotBeWrittenServeThisProgram) {
  userDefaults_->inner.setDiskFailing(true);
  EXPECT_EQ(answer(), fresh_);
  EXPECT_EQ(answer(), fresh_);
  EXPECT_EQ(resolver_->askedKeys().size(), 1U);
}

TEST_F(CachedPublicInfoResolverTest, AFailedLookUpOfTheAddressAsksTheService) {
  storeAnswer(1h);
  ipResolver_->setAnswer(std::unexpected(make_error_code(UrlErrorCode::timedOut)));
  EXPECT_EQ(answer(), fresh_);
  EXPECT_EQ(userDefaults_->changes.size(), 3U);
}

TEST_F(CachedPublicInfoResolverTest, ALookUpWithoutAnAddressAsksTheService) {
  storeAnswer(1h);
  ipResolver_->setAnswer(PublicInfo{});
  EXPECT_EQ(answer(), fresh_);
}

TEST_F(CachedPublicInfoResolverTest, AnErrorOfTheServiceIsPassedOnAndNothingStored) {
  storeAnswer(threeDays);
  resolver_->setAnswer(std::unexpected(make_error_code(UrlErrorCode::cannotConnectToHost)));
  EXPECT_EQ(answer(), Answer(std::unexpected(make_error_code(UrlErrorCode::cannotConnectToHost))));
  EXPECT_TRUE(userDefaults_->changes.empty());
}

TEST_F(CachedPublicInfoResolverTest, OnlyTextsAreStored) {
  resolver_->setAnswer(
      PublicInfo{{ip, "203.0.113.7"}, {supportsIp6, true}, {interface, BasicInterface{}}});
  static_cast<void>(answer());
  EXPECT_EQ(userDefaults_->object(storage).value(),
            PropertyListValue(PropertyListDictionary{{"ip", "203.0.113.7"}}));
}

TEST_F(CachedPublicInfoResolverTest, AnEmptyAnswerReplacesTheStoredOne) {
  storeAnswer(threeDays);
  resolver_->setAnswer(PublicInfo{});
  EXPECT_EQ(answer(), PublicInfo{});
  EXPECT_EQ(userDefaults_->object(storage).value(), PropertyListValue(PropertyListDictionary{}));
}

TEST_F(CachedPublicInfoResolverTest, AResolverDroppedMeanwhileCompletesOnce) {
  ipResolver_->setAnswer(std::nullopt);
  resolver_->setAnswer(std::nullopt);
  std::vector<Answer> answers;
  auto resolver = makeResolver();
  const std::weak_ptr<CachedPublicInfoResolver> weak = resolver;
  std::exchange(resolver, nullptr)->resolve({isp}, [&](Answer each) { answers.push_back(each); });
  ipResolver_->complete(0, PublicInfo{{ip, "203.0.113.7"}});
  EXPECT_TRUE(answers.empty());
  resolver_->complete(0, fresh_);
  EXPECT_EQ(answers, (std::vector<Answer>{fresh_}));
  EXPECT_TRUE(weak.expired());
}

class OvertakenRequestTest : public CachedPublicInfoResolverTest {
 protected:
  OvertakenRequestTest() {
    ipResolver_->setAnswer(std::nullopt);
    const auto resolver = makeResolver();
    for (const char* name : {"first", "second"}) {
      resolver->resolve({isp, country, ip}, [this, name](const Answer& answer) {
        completed_.emplace_back(std::string(name) +
                                (answer ? " answered" : " " + answer.error().message()));
      });
    }
  }

  std::vector<std::string> completed_;
};

TEST_F(OvertakenRequestTest, WhoseAddressWasCancelledDoesNotAskTheService) {
  ipResolver_->complete(0, std::unexpected(make_error_code(UrlErrorCode::cancelled)));
  EXPECT_TRUE(resolver_->askedKeys().empty());
  ipResolver_->complete(1, PublicInfo{{ip, "203.0.113.7"}});
  EXPECT_EQ(resolver_->askedKeys().size(), 1U);
  EXPECT_EQ(completed_,
            (std::vector<std::string>{"first the request was cancelled", "second answered"}));
}

TEST_F(OvertakenRequestTest, WhoseAddressComesLateDoesNotCancelTheLaterOnesQuestion) {
  resolver_->setAnswer(std::nullopt);
  ipResolver_->complete(1, PublicInfo{{ip, "203.0.113.7"}});
  ipResolver_->complete(0, PublicInfo{{ip, "203.0.113.7"}});
  EXPECT_EQ(resolver_->askedKeys().size(), 1U);
  resolver_->complete(0, fresh_);
  EXPECT_EQ(completed_,
            (std::vector<std::string>{"first the request was cancelled", "second answered"}));
}

TEST_F(OvertakenRequestTest, AnswersFromTheCacheAllTheSame) {
  storeAnswer(1h);
  ipResolver_->complete(0, PublicInfo{{ip, "203.0.113.7"}});
  EXPECT_EQ(completed_, (std::vector<std::string>{"first answered"}));
  ipResolver_->complete(1, PublicInfo{{ip, "203.0.113.7"}});
  EXPECT_TRUE(resolver_->askedKeys().empty());
}

using CachedPublicInfoResolverDeathTest = CachedPublicInfoResolverTest;

TEST_F(CachedPublicInfoResolverDeathTest, NeedsBothResolversAndUserDefaults) {
  const char* sentence = "a cached resolver was made without one of its resolvers";
  EXPECT_DEATH(CachedPublicInfoResolver(nullptr, resolver_, userDefaults_, clock_), sentence);
  EXPECT_DEATH(CachedPublicInfoResolver(ipResolver_, nullptr, userDefaults_, clock_), sentence);
  EXPECT_DEATH(CachedPublicInfoResolver(ipResolver_, resolver_, nullptr, clock_), sentence);
}

}  // namespace
}  // namespace lanternfold
