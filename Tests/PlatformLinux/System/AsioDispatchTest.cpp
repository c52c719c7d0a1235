// What only the production side of the dispatch seam has: threads and the main thread's run.
#include <atomic>
#include <future>
#include <latch>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/EventLoop.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

class AsioDispatchTest : public testing::Test {
 protected:
  [[nodiscard]] DispatchQueue& serial(std::string_view label = "test.serial",
                                      QualityOfService quality = QualityOfService::userInitiated) {
    return dispatch.serialQueue(label, quality);
  }
  [[nodiscard]] DispatchQueue& global() {
    return dispatch.globalQueue(QualityOfService::userInitiated);
  }

  /// What `work` returns on `queue`.
  template <typename Result>
  [[nodiscard]] static Result resultOn(DispatchQueue& queue, const std::function<Result()>& work) {
    std::promise<Result> promise;
    queue.async([&promise, &work] { promise.set_value(work()); });
    return promise.get_future().get();
  }

  EventLoop loop;
  AsioDispatch dispatch{loop};
};

TEST_F(AsioDispatchTest, EachThreadsWorksKeepTheirOrderOnASerialQueue) {
  constexpr int threadCount = 4;
  constexpr int worksEach = 2000;
  std::vector<std::vector<int>> seen(threadCount);
  std::latch done(threadCount * worksEach);
  std::vector<std::thread> threads;
  for (std::vector<int>& own : seen) {
    threads.emplace_back([this, &own, &done] {
      for (int index = 0; index < worksEach; ++index) {
        serial().async([&own, &done, index] {
          own.push_back(index);
          done.count_down();
        });
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  done.wait();

  for (const std::vector<int>& own : seen) {
    EXPECT_EQ(own.size(), static_cast<std::size_t>(worksEach));
    EXPECT_TRUE(std::ranges::is_sorted(own));
  }
}

TEST_F(AsioDispatchTest, SerialQueueRunsOneWorkAtATime) {
  std::atomic<int> running = 0;
  std::atomic<int> most = 0;
  std::latch done(200);
  for (int count = 0; count < 200; ++count) {
    serial().async([&] {
      most = std::max(most.load(), ++running);
      std::this_thread::yield();
      --running;
      done.count_down();
    });
    global().async([] {});  // keeps further threads of the pool awake
  }
  done.wait();
  EXPECT_EQ(most, 1);
}

TEST_F(AsioDispatchTest, GlobalQueueRunsWorksSideBySide) {
  // Each waits for the others: they end only when all of them run at once.
  constexpr int count = 12;
  std::latch together(count);
  std::latch done(count);
  for (int index = 0; index < count; ++index) {
    global().async([&] {
      together.arrive_and_wait();
      done.count_down();
    });
  }
  done.wait();
}

TEST_F(AsioDispatchTest, WorkThatWaitsForAnotherQueueDoesNotHoldItUp) {
  const int answer = resultOn<int>(serial("test.outer"), [this] {
    return resultOn<int>(serial("test.middle"),
                         [this] { return resultOn<int>(serial("test.inner"), [] { return 42; }); });
  });
  EXPECT_EQ(answer, 42);
}

TEST_F(AsioDispatchTest, WorksThatWaitInASyncLeaveThreadsForTheQueueTheyWaitFor) {
  // More than the pool has threads, and all of them taken before the queue gets its first turn.
  constexpr auto count = static_cast<std::ptrdiff_t>(2 * WorkerPool::maximumThreads);
  std::atomic<int> sum = 0;
  std::latch done(count);
  for (std::ptrdiff_t index = 0; index < count; ++index) {
    global().async([&] {
      serial().sync([&sum] { ++sum; });
      done.count_down();
    });
  }
  done.wait();
  EXPECT_EQ(sum, count);
}

TEST_F(AsioDispatchTest, SyncsFromManyThreadsAllRunOneAtATime) {
  int sum = 0;  // of the queue alone: a race would be seen by the thread sanitizer
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&] {
      for (int count = 0; count < 500; ++count) {
        int seen = 0;
        serial().sync([&sum, &seen] { seen = ++sum; });
        EXPECT_GT(seen, 0);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(sum, 2000);
}

TEST_F(AsioDispatchTest, DelaysFromManyThreadsAllRun) {
  std::latch done(4 * 250);
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([this, &done, thread] {
      for (int count = 0; count < 250; ++count) {
        serial(std::to_string(count % 3))
            .after(std::chrono::microseconds((count * 37 + thread) % 5000),
                   [&done] { done.count_down(); });
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  done.wait();
}

TEST_F(AsioDispatchTest, MainQueueRunsOnTheThreadThatRunsIt) {
  std::thread::id ranOn;
  dispatch.mainQueue().async([&] {
    ranOn = std::this_thread::get_id();
    dispatch.stopMain();
  });
  dispatch.runMain();
  EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST_F(AsioDispatchTest, MainQueueTakesWorkFromOtherThreadsWhileItRuns) {
  serial().after(5ms, [this] { dispatch.mainQueue().async([this] { dispatch.stopMain(); }); });
  dispatch.runMain();
}

TEST_F(AsioDispatchTest, RunEndsAtItsDeadline) {
  const auto deadline = std::chrono::steady_clock::now() + 10ms;
  EXPECT_FALSE(dispatch.runMainUntil(deadline));
  EXPECT_GE(std::chrono::steady_clock::now(), deadline);
}

TEST_F(AsioDispatchTest, DeadlineThatHasPassedEndsTheRunAtOnce) {
  EXPECT_FALSE(dispatch.runMainUntil(std::chrono::steady_clock::now() - 1h));
}

TEST_F(AsioDispatchTest, StopEndsARunWithADeadline) {
  serial().after(2ms, [this] { dispatch.stopMain(); });
  EXPECT_TRUE(dispatch.runMainUntil(std::chrono::steady_clock::now() + 1h));
}

TEST_F(AsioDispatchTest, ARunAfterOneThatHasEndedLastsToItsOwnEnd) {
  for (int run = 0; run < 3; ++run) {
    bool ran = false;
    dispatch.mainQueue().after(20ms, [&] {
      ran = true;
      dispatch.stopMain();
    });
    EXPECT_TRUE(dispatch.runMainUntil(std::chrono::steady_clock::now() + 1h));
    EXPECT_TRUE(ran) << run;
    EXPECT_FALSE(dispatch.runMainUntil(std::chrono::steady_clock::now() + 1ms));
  }
}

TEST_F(AsioDispatchTest, StopBeforeARunEndsItAtOnceAndOnlyThatOne) {
  bool ran = false;
  dispatch.mainQueue().async([&] {
    ran = true;
    dispatch.stopMain();
  });
  dispatch.stopMain();

  dispatch.runMain();
  EXPECT_FALSE(ran);
  dispatch.runMain();
  EXPECT_TRUE(ran);
}

TEST_F(AsioDispatchTest, WhatWaitsBehindAStopRunsInTheNextRun) {
  std::string order;
  dispatch.mainQueue().async([&] {
    order += "a";
    dispatch.stopMain();
  });
  dispatch.mainQueue().async([&] {
    order += "b";
    dispatch.stopMain();
  });

  dispatch.runMain();
  EXPECT_EQ(order, "a");
  dispatch.runMain();
  EXPECT_EQ(order, "ab");
}

TEST_F(AsioDispatchTest, BackgroundWorkYieldsToOrdinaryWork) {
  const auto niceValue = [] { return getpriority(PRIO_PROCESS, static_cast<id_t>(gettid())); };
  const int ordinary = niceValue();
  EXPECT_EQ(resultOn<int>(serial(), niceValue), ordinary);
  EXPECT_EQ(resultOn<int>(dispatch.globalQueue(QualityOfService::utility), niceValue), ordinary);
  const int lowered = std::max(ordinary, 10);
  EXPECT_EQ(resultOn<int>(dispatch.globalQueue(QualityOfService::background), niceValue), lowered);
  EXPECT_EQ(resultOn<int>(serial("test.background", QualityOfService::background), niceValue),
            lowered);
  EXPECT_EQ(niceValue(), ordinary);
}

TEST(AsioDispatchShutdownTest, RunningWorkIsWaitedForAndTheRestDestroyed) {
  EventLoop loop;
  auto dispatch = std::make_unique<AsioDispatch>(loop);
  DispatchQueue& queue = dispatch->serialQueue("test.serial", QualityOfService::userInitiated);
  const auto held = std::make_shared<int>(0);
  std::latch running(1);
  std::atomic<bool> ended = false;
  std::atomic<bool> ranSecond = false;
  queue.async([&] {
    running.count_down();
    std::this_thread::sleep_for(20ms);
    queue.async([held, &ranSecond] { ranSecond = true; });
    ended = true;
  });
  running.wait();

  dispatch.reset();

  EXPECT_TRUE(ended);
  EXPECT_FALSE(ranSecond);
  EXPECT_EQ(held.use_count(), 1);
}

/// What a `sync` on a queue that `choose` names returns to a background work while the dispatch is
/// destroyed meanwhile.
std::string outcomeOfASyncDuringShutdown(
    const std::function<DispatchQueue&(AsioDispatch&)>& choose) {
  EventLoop loop;
  auto dispatch = std::make_unique<AsioDispatch>(loop);
  AsioDispatch& alive = *dispatch;
  std::latch running(1);
  std::string outcome = "none";
  alive.serialQueue("test.waits", QualityOfService::background).async([&] {
    running.count_down();
    outcome = "";
    // Again and again: before the shutdown, while it waits, and with queues that it has not seen.
    for (int round = 0; round < 3; ++round) {
      const bool ran = choose(alive).sync([&outcome] { outcome += "ran "; });
      if (!ran) outcome += "refused ";
      std::this_thread::sleep_for(10ms);
    }
  });
  running.wait();
  dispatch.reset();
  return outcome;
}

TEST(AsioDispatchShutdownTest, WorkThatWaitsForTheMainQueueIsLetGo) {
  EXPECT_EQ(outcomeOfASyncDuringShutdown(
                [](AsioDispatch& dispatch) -> DispatchQueue& { return dispatch.mainQueue(); }),
            "refused refused refused ");
}

TEST(AsioDispatchShutdownTest, WorkThatWaitsForABusyQueueOfAnotherPoolIsLetGo) {
  for (int life = 0; life < 20; ++life) {
    const std::string outcome =
        outcomeOfASyncDuringShutdown([life](AsioDispatch& dispatch) -> DispatchQueue& {
          DispatchQueue& busy = dispatch.serialQueue("test.busy", QualityOfService::userInitiated);
          busy.async([life] { std::this_thread::sleep_for(std::chrono::milliseconds(life)); });
          return busy;
        });
    EXPECT_TRUE(outcome.ends_with("refused ")) << outcome;
  }
}

TEST(AsioDispatchShutdownTest, WorkThatWaitsForAQueueMadeDuringTheShutdownIsLetGo) {
  int number = 0;
  const std::string outcome =
      outcomeOfASyncDuringShutdown([&number](AsioDispatch& dispatch) -> DispatchQueue& {
        return dispatch.serialQueue(std::to_string(number++), QualityOfService::background);
      });
  EXPECT_TRUE(outcome.ends_with("refused ")) << outcome;
}

TEST(AsioDispatchShutdownTest, ThreadThatIsNoWorkIsLetGo) {
  EventLoop loop;
  auto dispatch = std::make_unique<AsioDispatch>(loop);
  std::latch waiting(1);
  bool ran = true;
  std::thread waiter([&ran, &waiting, &queue = dispatch->mainQueue()] {
    waiting.count_down();
    ran = queue.sync([] {});
  });
  waiting.wait();
  std::this_thread::sleep_for(20ms);
  dispatch.reset();
  waiter.join();
  EXPECT_FALSE(ran);
}

TEST(AsioDispatchShutdownTest, AwaitedWorkThatRunsIsWaitedFor) {
  EventLoop loop;
  auto dispatch = std::make_unique<AsioDispatch>(loop);
  std::latch running(1);
  std::atomic<bool> ran = false;
  dispatch->globalQueue(QualityOfService::utility).async([&, &alive = *dispatch] {
    ran = alive.serialQueue("test.serial", QualityOfService::background).sync([&] {
      running.count_down();
      std::this_thread::sleep_for(20ms);
    });
  });
  running.wait();
  dispatch.reset();
  EXPECT_TRUE(ran);
}

TEST(AsioDispatchShutdownTest, ManyShortLivesUnderLoad) {
  for (int life = 0; life < 50; ++life) {
    EventLoop loop;
    AsioDispatch dispatch(loop);
    for (int count = 0; count < 50; ++count) {
      const auto held = std::make_shared<int>(count);
      DispatchQueue& queue =
          dispatch.serialQueue(std::to_string(count % 3), QualityOfService::utility);
      queue.after(std::chrono::microseconds(count * 10),
                  [&queue, held] { queue.async([held] {}); });
      dispatch.globalQueue(QualityOfService::background).async([held] {});
      dispatch.mainQueue().async([held] {});
    }
  }
}

TEST(AsioDispatchDeathTest, MainQueueRunByOneOfItsOwnWorks) {
  EXPECT_DEATH(
      {
        EventLoop loop;
        AsioDispatch dispatch(loop);
        dispatch.mainQueue().async([&dispatch] { dispatch.runMain(); });
        dispatch.runMain();
      },
      "the main queue was run twice at the same time");
}

TEST(AsioDispatchDeathTest, DestroyedByOneOfItsOwnWorks) {
  EXPECT_DEATH(
      {
        EventLoop loop;
        auto dispatch = std::make_unique<AsioDispatch>(loop);
        dispatch->globalQueue(QualityOfService::utility).async([&dispatch] { dispatch.reset(); });
        std::this_thread::sleep_for(10s);
      },
      "the dispatch queues were destroyed by one of their own works");
}

}  // namespace
}  // namespace lanternfold
