// What every side of the URL seam promises.
#include <atomic>
#include <mutex>

#include "Tests/PlatformLinux/Contracts/UrlWorlds.h"

namespace lanternfold::test {
namespace {

using namespace std::chrono_literals;
using Texts = std::vector<std::string>;

template <typename World>
class UrlSessionContract : public testing::Test {
 protected:
  void SetUp() override {
    if constexpr (std::is_same_v<World, LinuxUrlWorld>) {
      OPEN_URL_WORLD(world_);
    }
  }

  std::shared_ptr<UrlSessionDataTask> task(const UrlRequest& request,
                                           const UrlSessionConfiguration& limits = patientLimits) {
    return world_.sessions().makeSession(limits)->dataTask(request,
                                                           [this](const UrlAnswer& answer) {
                                                             const std::lock_guard lock(mutex_);
                                                             texts_.push_back(textOf(answer));
                                                           });
  }
  /// What comes of one request.
  std::string outcomeOf(const UrlRequest& request,
                        const UrlSessionConfiguration& limits = patientLimits) {
    const std::size_t before = outcomes().size();
    task(request, limits)->resume();
    const bool hasCome = world_.runUntil([&] { return outcomes().size() > before; });
    return hasCome ? outcomes().back() : "no completion";
  }
  Texts outcomes() const {
    const std::lock_guard lock(mutex_);
    return texts_;
  }
  /// What has come once there are that many, and a while later.
  Texts outcomesAfter(std::size_t count) {
    EXPECT_TRUE(world_.runUntil([&] { return outcomes().size() >= count; }));
    world_.settle();
    return outcomes();
  }

  World world_;
  mutable std::mutex mutex_;
  Texts texts_;  // guarded by mutex_
};

using Worlds = testing::Types<LinuxUrlWorld, FakeUrlWorld>;

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    return std::is_same_v<World, LinuxUrlWorld> ? "Linux" : "Fake";
  }
};

TYPED_TEST_SUITE(UrlSessionContract, Worlds, WorldNames);

TYPED_TEST(UrlSessionContract, TheBodyComesOnABackgroundQueue) {
  const std::string url = this->world_.answering("{\"ip\":\"192.0.2.1\"}");
  std::atomic<int> isOnBackground = -1;
  const auto task = this->world_.sessions()
                        .makeSession(patientLimits)
                        ->dataTask({.url = url}, [&](const UrlAnswer& answer) {
                          EXPECT_EQ(textOf(answer), "answer: {\"ip\":\"192.0.2.1\"}");
                          Dispatch& dispatch = this->world_.dispatch();
                          isOnBackground =
                              dispatch.globalQueue(QualityOfService::utility).isCurrent();
                        });
  task->resume();
  ASSERT_TRUE(this->world_.runUntil([&] { return isOnBackground >= 0; }));
  EXPECT_EQ(isOnBackground, 1);
}

TYPED_TEST(UrlSessionContract, AnEmptyBodyIsEmptyData) {
  EXPECT_EQ(this->outcomeOf({.url = this->world_.answering("")}), "answer: ");
}

TYPED_TEST(UrlSessionContract, ATaskThatIsNotResumedSendsNothing) {
  const auto task = this->task({.url = this->world_.answering("x")});
  this->world_.settle();
  EXPECT_EQ(this->world_.requests(), 0);
  EXPECT_EQ(this->outcomes(), Texts{});
}

TYPED_TEST(UrlSessionContract, ASecondResumeDoesNothing) {
  const auto task = this->task({.url = this->world_.answering("x")});
  task->resume();
  task->resume();
  EXPECT_EQ(this->outcomesAfter(1), Texts{"answer: x"});
  task->resume();
  this->world_.settle();
  EXPECT_EQ(this->outcomes(), Texts{"answer: x"});
  EXPECT_EQ(this->world_.requests(), 1);
}

TYPED_TEST(UrlSessionContract, ACancelEndsTheTaskOnce) {
  const auto task = this->task({.url = this->world_.silent()});
  task->resume();
  this->world_.settle();
  task->cancel();
  task->cancel();
  EXPECT_EQ(this->outcomesAfter(1), Texts{"error -999"});
}

TYPED_TEST(UrlSessionContract, ACancelRightAfterTheResumeEndsTheTask) {
  const auto task = this->task({.url = this->world_.silent()});
  task->resume();
  task->cancel();
  EXPECT_EQ(this->outcomesAfter(1), Texts{"error -999"});
}

TYPED_TEST(UrlSessionContract, ATaskThatIsCancelledBeforeItsResumeSendsNothing) {
  const auto task = this->task({.url = this->world_.answering("x")});
  task->cancel();
  task->resume();
  EXPECT_EQ(this->outcomesAfter(1), Texts{"error -999"});
  EXPECT_EQ(this->world_.requests(), 0);
}

TYPED_TEST(UrlSessionContract, ACancelAfterTheEndDoesNothing) {
  const auto task = this->task({.url = this->world_.answering("x")});
  task->resume();
  ASSERT_EQ(this->outcomesAfter(1), Texts{"answer: x"});
  task->cancel();
  EXPECT_EQ(this->outcomesAfter(1), Texts{"answer: x"});
}

TYPED_TEST(UrlSessionContract, ATaskGoesOnWithoutItsSessionAndWhoeverHeldIt) {
  this->task({.url = this->world_.trickling("x")})->resume();
  EXPECT_EQ(this->outcomesAfter(1), Texts{"answer: x"});
}

TYPED_TEST(UrlSessionContract, ATaskIsDestroyedAfterItsCompletion) {
  const auto held = std::make_shared<int>(0);
  std::weak_ptr<UrlSessionDataTask> watched;
  std::atomic<bool> hasCompleted = false;
  {
    const auto task =
        this->world_.sessions()
            .makeSession(patientLimits)
            ->dataTask({.url = this->world_.answering("x")},
                       [held, &hasCompleted](const UrlAnswer&) { hasCompleted = true; });
    watched = task;
    task->resume();
  }
  EXPECT_TRUE(this->world_.runUntil([&] { return hasCompleted && held.use_count() == 1; }));
  EXPECT_TRUE(this->world_.runUntil([&] { return watched.expired(); }));
}

TYPED_TEST(UrlSessionContract, SeveralTasksOfOneSessionAllComplete) {
  const auto session = this->world_.sessions().makeSession(patientLimits);
  const std::string url = this->world_.answering("x");
  std::atomic<int> answers = 0;
  for (int count = 0; count < 20; ++count) {
    session
        ->dataTask({.url = url},
                   [&](const UrlAnswer& answer) { answers += textOf(answer) == "answer: x"; })
        ->resume();
  }
  EXPECT_TRUE(this->world_.runUntil([&] { return answers == 20; }));
}

TYPED_TEST(UrlSessionContract, ACompletionMayStartAnotherTaskAndCancelItsOwn) {
  const std::string first = this->world_.answering("1");
  const std::string second = this->world_.answering("2");
  std::shared_ptr<UrlSessionDataTask> task;
  task = this->world_.sessions()
             .makeSession(patientLimits)
             ->dataTask({.url = first}, [&](const UrlAnswer&) {
               task->cancel();
               this->task({.url = second})->resume();
             });
  task->resume();
  EXPECT_EQ(this->outcomesAfter(1), Texts{"answer: 2"});
}

// Limits.

TYPED_TEST(UrlSessionContract, SilenceOfTheSessionsLimitTimesOut) {
  EXPECT_EQ(this->outcomeOf({.url = this->world_.silent()},
                            {.timeoutForRequest = 200ms, .timeoutForResource = 20s}),
            "error -1001");
}

TYPED_TEST(UrlSessionContract, SilenceOfTheRequestsLimitTimesOut) {
  EXPECT_EQ(this->outcomeOf({.url = this->world_.silent(), .timeout = 200ms}), "error -1001");
}

TYPED_TEST(UrlSessionContract, WhoeverSaysALittleAllTheTimeIsNotSilent) {
  EXPECT_EQ(this->outcomeOf({.url = this->world_.trickling("x")},
                            {.timeoutForRequest = 300ms, .timeoutForResource = 20s}),
            "answer: x");
}

TYPED_TEST(UrlSessionContract, TheWholeExchangeHasALimitOfItsOwn) {
  EXPECT_EQ(this->outcomeOf({.url = this->world_.endless()},
                            {.timeoutForRequest = 20s, .timeoutForResource = 300ms}),
            "error -1001");
}

TYPED_TEST(UrlSessionContract, AnAnswerOf64KiBIsTakenAndOneByteMoreIsNot) {
  const std::string longest(longestUrlAnswerBytes, 'x');
  EXPECT_EQ(this->outcomeOf({.url = this->world_.answering(longest)}), "answer: " + longest);
  EXPECT_EQ(this->outcomeOf({.url = this->world_.answering(longest + "x")}), "error -1103");
}

// Redirects.

TYPED_TEST(UrlSessionContract, FiveRedirectsAreFollowedAndSixAreTooMany) {
  std::string url = this->world_.answering("there");
  for (int redirects = 1; redirects <= mostUrlRedirects; ++redirects) {
    url = this->world_.redirecting(url);
  }
  EXPECT_EQ(this->outcomeOf({.url = url}), "answer: there");
  EXPECT_EQ(this->outcomeOf({.url = this->world_.redirecting(url)}), "error -1007");
}

TYPED_TEST(UrlSessionContract, ARedirectToAnotherSchemeIsUnsupported) {
  EXPECT_EQ(this->outcomeOf({.url = this->world_.redirecting("file:///etc/hosts")}), "error -1002");
  EXPECT_EQ(this->outcomeOf({.url = this->world_.redirecting("ftp://host.example/")}),
            "error -1002");
}

// What cannot be asked.

TYPED_TEST(UrlSessionContract, WhatIsNoUrlOrNamesNoHostIsABadUrl) {
  for (const char* url : {"", "host.example", "http://", "http:///path", "https://?query"}) {
    EXPECT_EQ(this->outcomeOf({.url = url}), "error -1000") << url;
  }
}

TYPED_TEST(UrlSessionContract, AnotherSchemeIsUnsupported) {
  EXPECT_EQ(this->outcomeOf({.url = "file:///etc/hosts"}), "error -1002");
  EXPECT_EQ(this->outcomeOf({.url = "ftp://host.example/"}), "error -1002");
}

TYPED_TEST(UrlSessionContract, AnUnknownHostCannotBeFound) {
  EXPECT_EQ(this->outcomeOf({.url = this->world_.unknownHost()}), "error -1003");
}

TYPED_TEST(UrlSessionContract, AHostWithoutAnAddressOfTheFamilyCannotBeFound) {
  const std::string url = this->world_.answeringOverIPv4("four");
  EXPECT_EQ(this->outcomeOf({.url = url, .addressFamily = UrlAddressFamily::ipv6}), "error -1003");
  EXPECT_EQ(this->outcomeOf({.url = url, .addressFamily = UrlAddressFamily::ipv4}), "answer: four");
}

TYPED_TEST(UrlSessionContract, ARefusalAndALossAreToldApart) {
  EXPECT_EQ(this->outcomeOf({.url = this->world_.refusing()}), "error -1004");
  EXPECT_EQ(this->outcomeOf({.url = this->world_.closing()}), "error -1005");
}

// The end of the sessions.

TYPED_TEST(UrlSessionContract, DestroyingTheSessionsDestroysWhatIsUnderWay) {
  const auto held = std::make_shared<int>(0);
  std::atomic<bool> hasCompleted = false;
  const auto session = this->world_.sessions().makeSession(patientLimits);
  const auto completion = [&hasCompleted, held](const UrlAnswer&) { hasCompleted = true; };
  const auto running = session->dataTask({.url = this->world_.silent()}, completion);
  running->resume();
  this->world_.settle();
  this->world_.destroySessions();
  EXPECT_EQ(held.use_count(), 2) << "that of this test's own completion is left";
  running->cancel();
  this->world_.settle();
  EXPECT_FALSE(hasCompleted);
}

TYPED_TEST(UrlSessionContract, TasksThatOutliveTheSessionsDoNothing) {
  const auto session = this->world_.sessions().makeSession(patientLimits);
  std::atomic<bool> hasCompleted = false;
  const auto completion = [&hasCompleted](const UrlAnswer&) { hasCompleted = true; };
  const std::string url = this->world_.answering("x");
  const auto idle = session->dataTask({.url = url}, completion);
  const auto cancelled = session->dataTask({.url = url}, completion);
  this->world_.destroySessions();
  idle->resume();
  cancelled->cancel();
  session->dataTask({.url = url}, completion)->resume();
  this->world_.settle();
  EXPECT_FALSE(hasCompleted);
}

}  // namespace
}  // namespace lanternfold::test
