// What the fake does of its own, beside the contract of its seam.
#include "Tests/Support/FakeUrlSessions.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

constexpr const char* url = "http://echo.example/ip";

class FakeUrlSessionsTest : public testing::Test {
 protected:
  std::shared_ptr<UrlSessionDataTask> task(UrlRequest request) {
    const auto session =
        sessions_->makeSession({.timeoutForRequest = 5s, .timeoutForResource = 10s});
    return session->dataTask(std::move(request),
                             [this](UrlAnswer answer) { answers_.push_back(std::move(answer)); });
  }
  void fetch(UrlRequest request) { task(std::move(request))->resume(); }

  std::vector<UrlAnswer> answersAfter(std::chrono::nanoseconds duration) {
    dispatch_.advance(duration);
    return answers_;
  }
  static UrlAnswer failed(UrlErrorCode code) { return {.data = std::nullopt, .error = code}; }
  static UrlAnswer body(std::string text) { return {.data = std::move(text), .error = {}}; }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  std::unique_ptr<FakeUrlSessions> sessions_ = std::make_unique<FakeUrlSessions>(dispatch_);
  std::vector<UrlAnswer> answers_;
};

TEST_F(FakeUrlSessionsTest, AnswersAfterTheDelay) {
  sessions_->answer(url, "{}", 2s);
  fetch({.url = url});
  EXPECT_TRUE(answersAfter(2s - 1ns).empty());
  EXPECT_EQ(answersAfter(1ns), (std::vector{body("{}")}));
}

TEST_F(FakeUrlSessionsTest, ASilentServerEndsWithTheLongestSilence) {
  sessions_->neverAnswer(url);
  fetch({.url = url});
  EXPECT_TRUE(answersAfter(5s - 1ns).empty());
  EXPECT_EQ(answersAfter(1ns), (std::vector{failed(UrlErrorCode::timedOut)}));
}

TEST_F(FakeUrlSessionsTest, TheShorterSilenceCounts) {
  sessions_->neverAnswer(url);
  fetch({.url = url, .timeout = 1s});
  EXPECT_EQ(answersAfter(1s), (std::vector{failed(UrlErrorCode::timedOut)}));
}

TEST_F(FakeUrlSessionsTest, ATricklingServerEndsWithTheWholeExchange) {
  sessions_->setServer(
      url,
      {.answer = body("{}"), .delay = 1min, .manner = FakeUrlSessions::Server::Manner::trickling});
  fetch({.url = url});
  EXPECT_TRUE(answersAfter(10s - 1ns).empty());
  EXPECT_EQ(answersAfter(1ns), (std::vector{failed(UrlErrorCode::timedOut)}));
}

TEST_F(FakeUrlSessionsTest, OfRedirectsTheSessionFollowsFive) {
  sessions_->answer("http://echo.example/0", "{}");
  for (int hop = 1; hop <= mostUrlRedirects + 1; ++hop) {
    sessions_->setServer("http://echo.example/" + std::to_string(hop),
                         {.redirectsTo = "http://echo.example/" + std::to_string(hop - 1)});
  }
  fetch({.url = "http://echo.example/" + std::to_string(mostUrlRedirects)});
  EXPECT_EQ(answersAfter(0s), (std::vector{body("{}")}));
  fetch({.url = "http://echo.example/" + std::to_string(mostUrlRedirects + 1)});
  EXPECT_EQ(answersAfter(0s).back(), failed(UrlErrorCode::tooManyRedirects));
}

TEST_F(FakeUrlSessionsTest, ARedirectToAFileIsRefused) {
  sessions_->setServer(url, {.redirectsTo = "file:///etc/hosts"});
  fetch({.url = url});
  EXPECT_EQ(answersAfter(0s), (std::vector{failed(UrlErrorCode::unsupportedUrl)}));
}

TEST_F(FakeUrlSessionsTest, AHostOfTheOtherFamilyIsNotFound) {
  sessions_->setServer(url, {.answer = body("{}"), .family = UrlAddressFamily::ipv4});
  fetch({.url = url, .addressFamily = UrlAddressFamily::ipv6});
  EXPECT_EQ(answersAfter(0s), (std::vector{failed(UrlErrorCode::cannotFindHost)}));
}

TEST_F(FakeUrlSessionsTest, RemembersWhatBecameOfEachRequest) {
  sessions_->answer(url, "{}");
  sessions_->neverAnswer("http://silent.example");
  fetch({.url = url});
  dispatch_.runReady();
  const auto silent = task({.url = "http://silent.example"});
  silent->resume();
  silent->cancel();
  dispatch_.runReady();

  using State = FakeUrlSessions::Exchange::State;
  const auto exchanges = sessions_->exchanges();
  ASSERT_EQ(exchanges.size(), 2U);
  EXPECT_EQ(exchanges[0].state, State::completed);
  EXPECT_EQ(exchanges[1].state, State::cancelled);
  EXPECT_EQ(exchanges[1].session, 1U);
  EXPECT_EQ(answers_, (std::vector{body("{}"), failed(UrlErrorCode::cancelled)}));
  EXPECT_EQ(sessions_->tasksUnderWay(), 0U);
}

TEST_F(FakeUrlSessionsTest, ATaskCancelledBeforeItsStartSendsNothing) {
  const auto early = task({.url = url});
  early->cancel();
  early->resume();
  EXPECT_EQ(answersAfter(1h), (std::vector{failed(UrlErrorCode::cancelled)}));
  EXPECT_TRUE(sessions_->exchanges().empty());
}

TEST_F(FakeUrlSessionsTest, WhatIsUnderWayIsDestroyedWithTheSessions) {
  sessions_->answer(url, "{}");
  fetch({.url = url});
  sessions_.reset();
  EXPECT_TRUE(answersAfter(1h).empty());
}

}  // namespace
}  // namespace lanternfold
