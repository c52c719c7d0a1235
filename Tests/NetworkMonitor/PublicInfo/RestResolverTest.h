// Web resolvers over servers that a test sets up, and what their requests complete with.
#pragma once

#include <optional>

#include "NetworkMonitor/PublicInfo/RestApiPublicInfoResolve.h"
#include "NetworkMonitor/PublicInfo/ServiceUrls.h"
#include "Tests/Support/FakeUrlSessions.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {

class RestResolverTest : public testing::Test {
 protected:
  using Answer = PublicInfoResolver::Answer;
  using Keys = PublicInfoResolver::Keys;

  static constexpr const char* ipv4EchoUrl = "https://four.example/lanternfold/ip.php";
  static constexpr const char* ipv6EchoUrl = "https://six.example/lanternfold/ip.php";
  static constexpr const char* geolocationUrl =
      "http://geo.example/json/?fields=isp,query,countryCode,as";

  template <typename Resolver, typename... Further>
  std::shared_ptr<Resolver> make(const Further&... further) {
    return std::make_shared<Resolver>(sessions_, BundleInformation{}, urls_, further...);
  }

  /// Every call of the completion is one more of `answers_`.
  void ask(const std::shared_ptr<PublicInfoResolver>& resolver, Keys keys) {
    resolver->resolve(std::move(keys),
                      [this](Answer answer) { answers_.push_back(std::move(answer)); });
  }

  /// What a request completes with, and nothing twice.
  Answer answerOf(const std::shared_ptr<PublicInfoResolver>& resolver, Keys keys) {
    answers_.clear();
    ask(resolver, std::move(keys));
    dispatch_.advance(std::chrono::hours(1));
    EXPECT_EQ(answers_.size(), 1U);
    return answers_.empty() ? std::unexpected(std::error_code()) : answers_.front();
  }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakeUrlSessions sessions_{dispatch_};
  const ServiceUrls urls_{.ipv4Echo = ServiceUrl::of("https://four.example"),
                          .ipv6Echo = ServiceUrl::of("https://six.example"),
                          .geolocation = ServiceUrl::of("http://geo.example"),
                          .sentinel = ServiceUrl::of("https://sentinel.example")};
  std::vector<Answer> answers_;
};

[[nodiscard]] inline PublicInfoResolver::Answer failed(std::error_code error) {
  return std::unexpected(error);
}

}  // namespace lanternfold
