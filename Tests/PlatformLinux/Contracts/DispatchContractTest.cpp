// What every side of the dispatch seam promises.
#include <atomic>

#include "Tests/PlatformLinux/Contracts/DispatchContractFixture.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

template <typename World>
using DispatchContractTest = DispatchContractFixture<World>;
TYPED_TEST_SUITE(DispatchContractTest, DispatchSides, DispatchSideNames);

TYPED_TEST(DispatchContractTest, SerialQueueRunsWorksInTheOrderOfTheCalls) {
  std::vector<int> order;  // of one queue only: needs no lock
  std::atomic<bool> finished = false;
  for (int index = 0; index < 1000; ++index) {
    this->serial().async([&order, index] { order.push_back(index); });
  }
  this->serial().async([&finished] { finished = true; });

  ASSERT_TRUE(this->world.runUntil([&finished] { return finished.load(); }));

  std::vector<int> expected(1000);
  std::ranges::generate(expected, [next = 0]() mutable { return next++; });
  EXPECT_EQ(order, expected);
}

TYPED_TEST(DispatchContractTest, MainQueueRunsWorksInTheOrderOfTheCalls) {
  for (const char* entry : {"a", "b", "c"}) {
    this->main().async([this, entry] { this->diary.write(entry); });
  }
  ASSERT_TRUE(this->world.runUntil(this->diary.holds(3)));
  EXPECT_EQ(this->diary.entries(), (Entries{"a", "b", "c"}));
}

TYPED_TEST(DispatchContractTest, AsyncNeverRunsTheWorkBeforeItReturns) {
  std::atomic<bool> returned = false;
  std::atomic<int> tooEarly = 0;
  std::atomic<int> done = 0;
  this->main().async([&] {
    this->main().async([&] {
      if (!returned) ++tooEarly;
      ++done;
    });
    returned = true;
  });
  ASSERT_TRUE(this->world.runUntil([&done] { return done == 1; }));
  EXPECT_EQ(tooEarly, 0);
}

TYPED_TEST(DispatchContractTest, WorkAppendedByAWorkOfTheSameQueueRunsAfterIt) {
  this->main().async([this] {
    this->main().async([this] { this->diary.write("appended"); });
    this->diary.write("appending");
  });
  this->main().async([this] { this->diary.write("waiting"); });
  ASSERT_TRUE(this->world.runUntil(this->diary.holds(3)));
  EXPECT_EQ(this->diary.entries(), (Entries{"appending", "waiting", "appended"}));
}

TYPED_TEST(DispatchContractTest, WhatAWorkHoldsIsReleasedBeforeTheNextWork) {
  auto held = std::make_unique<AtDestruction>([this] {
    this->diary.write(this->serial().isCurrent() ? "released on the queue" : "released elsewhere");
  });
  this->serial().async([this, held = std::move(held)] { this->diary.write("first"); });
  this->serial().async([this] { this->diary.write("second"); });
  ASSERT_TRUE(this->world.runUntil(this->diary.holds(3)));
  EXPECT_EQ(this->diary.entries(), (Entries{"first", "released on the queue", "second"}));
}

TYPED_TEST(DispatchContractTest, IsCurrentOnlyInsideTheQueuesOwnWorks) {
  DispatchQueue& serial = this->serial();
  DispatchQueue& other = this->serial("test.other");
  DispatchQueue& main = this->main();
  DispatchQueue& global = this->world.dispatch().globalQueue(QualityOfService::utility);
  const std::vector<DispatchQueue*> queues{&main, &serial, &other, &global};
  const auto current = [queues] {
    std::string text;
    for (const DispatchQueue* queue : queues) text += queue->isCurrent() ? "+" : "-";
    return text;
  };

  EXPECT_EQ(current(), "----");
  for (std::size_t index = 0; index < queues.size(); ++index) {
    queues[index]->async([this, current] { this->diary.write(current()); });
    ASSERT_TRUE(this->world.runUntil(this->diary.holds(index + 1)));
  }
  EXPECT_EQ(this->diary.entries(), (Entries{"+---", "-+--", "--+-", "---+"}));
  EXPECT_EQ(current(), "----");
}

TYPED_TEST(DispatchContractTest, AssertOnQueuePassesOnTheQueue) {
  this->serial().async([this] {
    assertOnQueue(this->serial());
    this->diary.write("passed");
  });
  EXPECT_TRUE(this->world.runUntil(this->diary.holds(1)));
}

TYPED_TEST(DispatchContractTest, OneQueuePerLabel) {
  Dispatch& dispatch = this->world.dispatch();
  DispatchQueue& queue = dispatch.serialQueue("test.label", QualityOfService::userInitiated);

  EXPECT_EQ(&dispatch.serialQueue("test.label", QualityOfService::userInitiated), &queue);
  EXPECT_EQ(&dispatch.serialQueue("test.label", QualityOfService::background), &queue);
  EXPECT_NE(&dispatch.serialQueue("test.label2", QualityOfService::userInitiated), &queue);
  EXPECT_NE(&dispatch.serialQueue("main", QualityOfService::userInitiated), &dispatch.mainQueue());
  EXPECT_EQ(queue.label(), "test.label");
}

TYPED_TEST(DispatchContractTest, OneGlobalQueuePerQualityOfService) {
  Dispatch& dispatch = this->world.dispatch();
  std::vector<DispatchQueue*> queues;
  for (const QualityOfService quality :
       {QualityOfService::userInteractive, QualityOfService::userInitiated,
        QualityOfService::utility, QualityOfService::background}) {
    DispatchQueue& queue = dispatch.globalQueue(quality);
    EXPECT_EQ(&dispatch.globalQueue(quality), &queue);
    EXPECT_EQ(std::ranges::count(queues, &queue), 0);
    queues.push_back(&queue);
  }
}

TYPED_TEST(DispatchContractTest, GlobalQueueRunsEveryWork) {
  std::atomic<int> runs = 0;
  for (const QualityOfService quality : {QualityOfService::utility, QualityOfService::background}) {
    for (int count = 0; count < 100; ++count) {
      this->world.dispatch().globalQueue(quality).async([&runs] { ++runs; });
    }
  }
  ASSERT_TRUE(this->world.runUntil([&runs] { return runs == 200; }));
}

TYPED_TEST(DispatchContractTest, DelayedWorkRunsNoEarlierThanItsDelay) {
  for (DispatchQueue* queue : {&this->main(), &this->serial(),
                               &this->world.dispatch().globalQueue(QualityOfService::background)}) {
    const Clock& clock = this->world.clock();
    const auto called = clock.steadyNow();
    std::atomic<std::chrono::nanoseconds> waited{0ns};
    queue->after(20ms, [&waited, &clock, called] { waited = clock.steadyNow() - called; });
    ASSERT_TRUE(this->world.runUntil([&waited] { return waited.load() != 0ns; }));
    EXPECT_GE(waited.load(), 20ms) << queue->label();
  }
}

TYPED_TEST(DispatchContractTest, ShorterDelayRunsFirst) {
  this->serial().after(std::chrono::hours(1), [this] { this->diary.write("hour"); });
  this->serial().after(250ms, [this] { this->diary.write("long"); });
  this->serial().after(1ms, [this] { this->diary.write("short"); });
  ASSERT_TRUE(this->world.runUntil(this->diary.holds(2)));
  EXPECT_EQ(this->diary.entries(), (Entries{"short", "long"}));
}

TYPED_TEST(DispatchContractTest, EqualDelaysKeepTheOrderOfTheCalls) {
  Entries expected;
  for (int index = 0; index < 200; ++index) {
    expected.push_back(std::to_string(index));
    this->serial().after(3ms, [this, index] { this->diary.write(std::to_string(index)); });
  }
  ASSERT_TRUE(this->world.runUntil(this->diary.holds(200)));
  EXPECT_EQ(this->diary.entries(), expected);
}

TYPED_TEST(DispatchContractTest, DelayOfZeroOrLessIsNone) {
  this->main().after(0ns, [this] { this->diary.write("zero"); });
  this->main().async([this] { this->diary.write("async"); });
  this->main().after(-1h, [this] { this->diary.write("negative"); });
  this->main().after(std::chrono::nanoseconds::min(), [this] { this->diary.write("least"); });
  ASSERT_TRUE(this->world.runUntil(this->diary.holds(4)));
  EXPECT_EQ(this->diary.entries(), (Entries{"zero", "async", "negative", "least"}));
}

TYPED_TEST(DispatchContractTest, LongestDelayDoesNotOverflow) {
  this->main().after(std::chrono::nanoseconds::max(), [this] { this->diary.write("never"); });
  this->main().after(1ms, [this] { this->diary.write("soon"); });
  ASSERT_TRUE(this->world.runUntil(this->diary.holds(1)));
  EXPECT_EQ(this->diary.entries(), (Entries{"soon"}));
}

TYPED_TEST(DispatchContractTest, WorkMayDelayItselfAgainAndAgain) {
  std::atomic<int> ticks = 0;
  const std::function<void()> tick = [&] {
    if (++ticks < 5) this->serial().after(1ms, tick);
  };
  this->serial().after(1ms, tick);
  ASSERT_TRUE(this->world.runUntil([&ticks] { return ticks == 5; }));
}

TYPED_TEST(DispatchContractTest, DestructionDestroysWaitingWorkWithoutRunningIt) {
  const auto held = std::make_shared<int>(0);
  std::atomic<bool> ran = false;
  const auto work = [held, &ran] { ran = true; };
  this->main().async(work);  // the main queue is not run
  this->main().after(std::chrono::hours(1), work);
  this->serial().after(std::chrono::hours(1), work);
  this->world.dispatch().globalQueue(QualityOfService::background).after(1h, work);
  EXPECT_GT(held.use_count(), 2);

  this->world.destroyDispatch();

  EXPECT_FALSE(ran);
  EXPECT_EQ(held.use_count(), 2) << "besides the test's own there is only the copy in `work`";
}

TYPED_TEST(DispatchContractTest, WorkAppendedWhileTheDispatchIsDestroyedIsDestroyedToo) {
  const auto held = std::make_shared<int>(0);
  std::atomic<bool> ran = false;
  DispatchQueue& main = this->main();
  DispatchQueue& serial = this->serial();
  const auto appendMore = [&main, &serial, &ran, held] {
    for (DispatchQueue* queue : {&main, &serial}) {
      queue->async([held, &ran] { ran = true; });
      queue->after(1ms, [held, &ran] { ran = true; });
    }
  };
  main.async([guard = std::make_unique<AtDestruction>(appendMore)] {});
  serial.after(1h, [guard = std::make_unique<AtDestruction>(appendMore)] {});

  this->world.destroyDispatch();

  EXPECT_FALSE(ran);
  EXPECT_EQ(held.use_count(), 2);
}

template <typename World>
using DispatchContractDeathTest = DispatchContractTest<World>;
TYPED_TEST_SUITE(DispatchContractDeathTest, DispatchSides, DispatchSideNames);

TYPED_TEST(DispatchContractDeathTest, AssertOnQueueStopsTheProgramElsewhere) {
  EXPECT_DEATH(assertOnQueue(this->serial("test.queue")),
               "code that belongs on the queue \"test.queue\" ran elsewhere");
}

}  // namespace
}  // namespace lanternfold
