#include "NetworkMonitor/PublicInfo/PublicInfoResolverError.h"
#include "NetworkMonitor/PublicInfo/QuernapleIpResolver.h"
#include "NetworkMonitor/PublicInfo/RestApiPublicInfoResolve.h"
#include "Tests/NetworkMonitor/PublicInfo/RestResolverTest.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using enum PublicInfoKey;

constexpr const char* url = "http://service.example/";

/// Takes "isp, country" apart; "broken" is no answer.
class CommaResolver final : public RestApiPublicInfoResolve {
 public:
  using RestApiPublicInfoResolve::RestApiPublicInfoResolve;

  [[nodiscard]] Keys supportedKeys() const override { return {isp, country}; }
  [[nodiscard]] std::string apiUrl() const override { return url; }
  [[nodiscard]] Answer parseResponse(std::string_view data) const override {
    if (data == "broken") return std::unexpected(make_error_code(PublicInfoDecodingError::notJson));
    const auto comma = data.find(", ");
    return PublicInfo{{isp, std::string(data.substr(0, comma))},
                      {country, std::string(data.substr(comma + 2))}};
  }
};

class RestApiPublicInfoResolveTest : public RestResolverTest {
 protected:
  std::shared_ptr<CommaResolver> makeResolver(const BundleInformation& bundle = {}) {
    return std::make_shared<CommaResolver>(sessions_, bundle);
  }
};

TEST_F(RestApiPublicInfoResolveTest, AnAnswerIsParsed) {
  sessions_.answer(url, "Example Net, IT");
  EXPECT_EQ(answerOf(makeResolver(), {isp, country}),
            (PublicInfo{{isp, "Example Net"}, {country, "IT"}}));
}

TEST_F(RestApiPublicInfoResolveTest, OnlyTheRequestedKeysAreAnswered) {
  sessions_.answer(url, "Example Net, IT");
  EXPECT_EQ(answerOf(makeResolver(), {country, ip}), (PublicInfo{{country, "IT"}}));
  EXPECT_EQ(answerOf(makeResolver(), {}), PublicInfo{});
}

TEST_F(RestApiPublicInfoResolveTest, AnAnswerThatCannotBeParsedIsItsError) {
  sessions_.answer(url, "broken");
  EXPECT_EQ(answerOf(makeResolver(), {isp}), failed(PublicInfoDecodingError::notJson));
}

TEST_F(RestApiPublicInfoResolveTest, AnErrorOfTheTransportIsPassedOn) {
  for (const auto code : {UrlErrorCode::cannotConnectToHost, UrlErrorCode::cannotFindHost,
                          UrlErrorCode::serverCertificateUntrusted}) {
    sessions_.fail(url, code);
    EXPECT_EQ(answerOf(makeResolver(), {isp}), failed(code));
  }
}

TEST_F(RestApiPublicInfoResolveTest, NeitherAnAnswerNorAnErrorIsAGenericError) {
  sessions_.setServer(url, {});
  EXPECT_EQ(answerOf(makeResolver(), {isp}), failed(PublicInfoResolverError::generic));
}

TEST_F(RestApiPublicInfoResolveTest, AnEmptyBodyIsParsedLikeAnyOther) {
  sessions_.answer("https://four.example/lanternfold/ip.php", "");
  EXPECT_EQ(answerOf(make<QuernapleIpResolver>(), {ip}), failed(PublicInfoDecodingError::notJson));
}

TEST_F(RestApiPublicInfoResolveTest, DataCountsBeforeAnError) {
  sessions_.setServer(
      url, {.answer = {.data = "Example Net, IT", .error = UrlErrorCode::networkConnectionLost}});
  EXPECT_EQ(answerOf(makeResolver(), {isp}), (PublicInfo{{isp, "Example Net"}}));
}

TEST_F(RestApiPublicInfoResolveTest, ARequestMayBeSilentForAMinuteAndASessionForLess) {
  static_cast<void>(answerOf(makeResolver(), {isp}));
  const auto exchanges = sessions_.exchanges();
  ASSERT_EQ(exchanges.size(), 1U);
  EXPECT_EQ(exchanges[0].request, (UrlRequest{.url = url, .timeout = 60s}));
  EXPECT_EQ(exchanges[0].configuration,
            (UrlSessionConfiguration{.timeoutForRequest = 5s, .timeoutForResource = 10s}));
}

TEST_F(RestApiPublicInfoResolveTest, AWidgetExtensionHasThreeAndFourSeconds) {
  EXPECT_EQ(publicInfoSessionConfiguration({.extensionPointIdentifier = widgetExtensionPoint}),
            (UrlSessionConfiguration{.timeoutForRequest = 3s, .timeoutForResource = 4s}));
  static_cast<void>(
      answerOf(makeResolver({.extensionPointIdentifier = widgetExtensionPoint}), {isp}));
  EXPECT_EQ(
      sessions_.configurations(),
      (std::vector{UrlSessionConfiguration{.timeoutForRequest = 3s, .timeoutForResource = 4s}}));
}

TEST_F(RestApiPublicInfoResolveTest, AnotherExtensionOrNoneHasFiveAndTenSeconds) {
  const UrlSessionConfiguration ordinary{.timeoutForRequest = 5s, .timeoutForResource = 10s};
  EXPECT_EQ(publicInfoSessionConfiguration({}), ordinary);
  EXPECT_EQ(publicInfoSessionConfiguration({.extensionPointIdentifier = ""}), ordinary);
  EXPECT_EQ(
      publicInfoSessionConfiguration({.extensionPointIdentifier = "com.apple.share-services"}),
      ordinary);
}

TEST_F(RestApiPublicInfoResolveTest, ASilentServiceTimesOutAfterTheSessionsSilence) {
  sessions_.neverAnswer(url);
  ask(makeResolver(), {isp});
  dispatch_.advance(5s - 1ns);
  EXPECT_TRUE(answers_.empty());
  dispatch_.advance(1ns);
  EXPECT_EQ(answers_, (std::vector{failed(UrlErrorCode::timedOut)}));
}

TEST_F(RestApiPublicInfoResolveTest, ATricklingServiceTimesOutAfterTheWholeExchange) {
  sessions_.setServer(
      url, {.answer = {}, .delay = 1h, .manner = FakeUrlSessions::Server::Manner::trickling});
  ask(makeResolver(), {isp});
  dispatch_.advance(10s - 1ns);
  EXPECT_TRUE(answers_.empty());
  dispatch_.advance(1ns);
  EXPECT_EQ(answers_, (std::vector{failed(UrlErrorCode::timedOut)}));
}

TEST_F(RestApiPublicInfoResolveTest, EveryResolveMakesASessionOfItsOwn) {
  sessions_.answer(url, "Example Net, IT");
  const auto resolver = makeResolver();
  static_cast<void>(answerOf(resolver, {isp}));
  static_cast<void>(answerOf(resolver, {isp}));
  ASSERT_EQ(sessions_.exchanges().size(), 2U);
  EXPECT_EQ(sessions_.exchanges()[0].session, 0U);
  EXPECT_EQ(sessions_.exchanges()[1].session, 1U);
}

TEST_F(RestApiPublicInfoResolveTest, ASecondResolveCancelsTheFirst) {
  sessions_.answer(url, "Example Net, IT", 1s);
  const auto resolver = makeResolver();
  std::vector<std::string> completed;
  resolver->resolve({isp}, [&completed](Answer answer) {
    EXPECT_EQ(answer, failed(UrlErrorCode::cancelled));
    completed.emplace_back("first");
  });
  dispatch_.advance(500ms);
  EXPECT_TRUE(completed.empty());
  resolver->resolve({isp}, [&completed](Answer answer) {
    EXPECT_EQ(answer, (PublicInfo{{isp, "Example Net"}}));
    completed.emplace_back("second");
  });
  dispatch_.advance(1h);
  EXPECT_EQ(completed, (std::vector<std::string>{"first", "second"}));
}

TEST_F(RestApiPublicInfoResolveTest, ASecondResolveAfterTheFirstCancelsNothing) {
  sessions_.answer(url, "Example Net, IT");
  const auto resolver = makeResolver();
  EXPECT_TRUE(answerOf(resolver, {isp}).has_value());
  EXPECT_TRUE(answerOf(resolver, {isp}).has_value());
  for (const auto& exchange : sessions_.exchanges()) {
    EXPECT_EQ(exchange.state, FakeUrlSessions::Exchange::State::completed);
  }
}

TEST_F(RestApiPublicInfoResolveTest, ACompletionMayResolveAgain) {
  sessions_.answer(url, "Example Net, IT");
  const auto resolver = makeResolver();
  resolver->resolve({isp}, [this, resolver](Answer) { ask(resolver, {country}); });
  dispatch_.advance(1s);
  EXPECT_EQ(answers_, (std::vector<Answer>{PublicInfo{{country, "IT"}}}));
}

TEST_F(RestApiPublicInfoResolveTest, TheDataTaskIsThatOfTheRequestInFlight) {
  sessions_.answer(url, "Example Net, IT", 1s);
  const auto resolver = makeResolver();
  EXPECT_EQ(resolver->dataTask(), nullptr);
  ask(resolver, {isp});
  const auto first = resolver->dataTask();
  EXPECT_NE(first, nullptr);
  ask(resolver, {isp});
  const auto second = resolver->dataTask();
  EXPECT_NE(second, nullptr);
  EXPECT_NE(second, first);
  dispatch_.advance(1ms);
  EXPECT_EQ(resolver->dataTask(), second) << "the cancelled one took the other one with it";
  dispatch_.advance(1s);
  EXPECT_EQ(resolver->dataTask(), nullptr);
}

TEST_F(RestApiPublicInfoResolveTest, ACancelledDataTaskCompletesWithThat) {
  sessions_.neverAnswer(url);
  const auto resolver = makeResolver();
  ask(resolver, {isp});
  resolver->dataTask()->cancel();
  dispatch_.runReady();
  EXPECT_EQ(answers_, (std::vector{failed(UrlErrorCode::cancelled)}));
}

TEST_F(RestApiPublicInfoResolveTest, AResolverDroppedMeanwhileCompletesOnce) {
  sessions_.answer(url, "Example Net, IT", 1s);
  auto resolver = makeResolver();
  const std::weak_ptr<CommaResolver> weak = resolver;
  ask(std::exchange(resolver, nullptr), {isp});
  dispatch_.advance(1h);
  EXPECT_EQ(answers_, (std::vector<Answer>{PublicInfo{{isp, "Example Net"}}}));
  EXPECT_TRUE(weak.expired());
  EXPECT_EQ(sessions_.tasksUnderWay(), 0U);
}

TEST_F(RestApiPublicInfoResolveTest, AResolverDroppedByItsCompletionIsLetGo) {
  sessions_.answer(url, "Example Net, IT");
  auto resolver = makeResolver();
  const std::weak_ptr<CommaResolver> weak = resolver;
  resolver->resolve({isp}, [&resolver](Answer) { resolver.reset(); });
  dispatch_.advance(1h);
  EXPECT_TRUE(weak.expired());
}

TEST_F(RestApiPublicInfoResolveTest, AResolverIsLetGoWithTheSessions) {
  auto sessions = std::make_unique<FakeUrlSessions>(dispatch_);
  sessions->neverAnswer(url);
  auto resolver = std::make_shared<CommaResolver>(*sessions, BundleInformation{});
  const std::weak_ptr<CommaResolver> weak = resolver;
  ask(std::exchange(resolver, nullptr), {isp});
  EXPECT_FALSE(weak.expired());
  sessions.reset();
  EXPECT_TRUE(weak.expired());
  dispatch_.advance(1h);
  EXPECT_TRUE(answers_.empty());
}

using RestApiPublicInfoResolveDeathTest = RestApiPublicInfoResolveTest;

TEST_F(RestApiPublicInfoResolveDeathTest, TheBaseHasNoKeysOfItsOwn) {
  const RestApiPublicInfoResolve base(sessions_, {});
  EXPECT_DEATH(static_cast<void>(base.supportedKeys()),
               "the base of the web resolvers was asked for its keys");
}

TEST_F(RestApiPublicInfoResolveDeathTest, TheBaseHasNoUrlOfItsOwn) {
  const auto base = std::make_shared<RestApiPublicInfoResolve>(sessions_, BundleInformation{});
  EXPECT_DEATH(static_cast<void>(base->apiUrl()),
               "the base of the web resolvers was asked for its URL");
  EXPECT_DEATH(base->resolve({}, [](Answer) {}),
               "the base of the web resolvers was asked for its URL");
}

TEST_F(RestApiPublicInfoResolveDeathTest, TheBaseParsesNothing) {
  const RestApiPublicInfoResolve base(sessions_, {});
  EXPECT_DEATH(static_cast<void>(base.parseResponse("{}")),
               "the base of the web resolvers was asked to parse an answer");
}

}  // namespace
}  // namespace lanternfold
