#include <gtest/gtest.h>

#include "WidgetHost/Service/RestartPolicy.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

constexpr RestartPolicy::TimePoint start{1000s};

TEST(RestartPolicy, StartsAtOnceBeforeAnyFailure) {
  const RestartPolicy policy;
  EXPECT_LE(policy.nextStart(), start);
  EXPECT_FALSE(policy.hasFailedTooOften());
}

TEST(RestartPolicy, PausesTwiceAsLongAfterEachFailureUpToFiveMinutes) {
  RestartPolicy policy;
  auto now = start;
  std::vector<std::chrono::seconds> pauses;
  for (int failure = 0; failure < 11; ++failure) {
    policy.failed(now);
    pauses.push_back(std::chrono::duration_cast<std::chrono::seconds>(policy.nextStart() - now));
    now += 1h;
  }
  EXPECT_EQ(pauses, (std::vector<std::chrono::seconds>{1s, 2s, 4s, 8s, 16s, 32s, 64s, 128s, 256s,
                                                       300s, 300s}));
  EXPECT_FALSE(policy.hasFailedTooOften());
}

TEST(RestartPolicy, ASuccessMakesTheNextFailureTheFirst) {
  RestartPolicy policy;
  policy.failed(start);
  policy.failed(start + 1h);
  policy.succeeded();
  EXPECT_LE(policy.nextStart(), start);
  policy.failed(start + 2h);
  EXPECT_EQ(policy.nextStart(), start + 2h + 1s);
}

TEST(RestartPolicy, FiveFailuresWithinAMinuteAreTooMany) {
  RestartPolicy policy;
  for (const auto after : {0s, 15s, 30s, 45s}) policy.failed(start + after);
  EXPECT_FALSE(policy.hasFailedTooOften());
  policy.failed(start + 60s);
  EXPECT_TRUE(policy.hasFailedTooOften());
  policy.succeeded();
  EXPECT_TRUE(policy.hasFailedTooOften());
}

TEST(RestartPolicy, FiveFailuresInMoreThanAMinuteAreNot) {
  RestartPolicy policy;
  for (int failure = 0; failure < 100; ++failure) {
    policy.failed(start + failure * 15s + failure * 1ms);
    EXPECT_FALSE(policy.hasFailedTooOften()) << failure;
  }
}

TEST(RestartPolicy, SuccessesBetweenThemDoNotMakeFailuresFewer) {
  RestartPolicy policy;
  for (int failure = 0; failure < 5; ++failure) {
    policy.failed(start + failure * 1s);
    policy.succeeded();
  }
  EXPECT_TRUE(policy.hasFailedTooOften());
}

TEST(RestartPolicy, ForgivenItStartsAnew) {
  RestartPolicy policy;
  for (int failure = 0; failure < 5; ++failure) policy.failed(start);
  policy.forgive();
  EXPECT_FALSE(policy.hasFailedTooOften());
  EXPECT_LE(policy.nextStart(), start);
  policy.failed(start);
  EXPECT_EQ(policy.nextStart(), start + 1s);
  EXPECT_FALSE(policy.hasFailedTooOften());
}

}  // namespace
}  // namespace lanternfold
