// What every side of the dispatch seam promises about waiting for a work.
#include "Tests/PlatformLinux/Contracts/DispatchContractFixture.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;

template <typename World>
using DispatchSyncContractTest = DispatchContractFixture<World>;
TYPED_TEST_SUITE(DispatchSyncContractTest, DispatchSides, DispatchSideNames);

TYPED_TEST(DispatchSyncContractTest, SyncReturnsWhenTheWorkHasRun) {
  DispatchQueue& queue = this->serial();
  EXPECT_TRUE(queue.sync([&] { this->diary.write(queue.isCurrent() ? "on the queue" : "off"); }));
  EXPECT_EQ(this->diary.entries(), (Entries{"on the queue"}));
  EXPECT_FALSE(queue.isCurrent());
}

TYPED_TEST(DispatchSyncContractTest, SyncRunsAfterTheWorksThatWaitAlready) {
  for (const char* entry : {"a", "b"}) {
    this->serial().async([this, entry] { this->diary.write(entry); });
  }
  EXPECT_TRUE(this->serial().sync([this] { this->diary.write("awaited"); }));
  EXPECT_EQ(this->diary.entries(), (Entries{"a", "b", "awaited"}));
}

TYPED_TEST(DispatchSyncContractTest, SyncFromAWorkOfAnotherQueueComesBackToThatWork) {
  DispatchQueue& outer = this->serial("test.outer");
  DispatchQueue& inner = this->serial("test.inner");
  const auto current = [&outer, &inner] {
    return std::string(outer.isCurrent() ? "+" : "-") + (inner.isCurrent() ? "+" : "-");
  };
  outer.async([&, current] {
    this->diary.write(current());
    EXPECT_TRUE(inner.sync([&] { this->diary.write(current()); }));
    this->diary.write(current());
  });
  ASSERT_TRUE(this->world.runUntil(this->diary.holds(3)));
  EXPECT_EQ(this->diary.entries(), (Entries{"+-", "-+", "+-"}));
}

TYPED_TEST(DispatchSyncContractTest, SyncGoesThroughQueuesOfEveryQuality) {
  Dispatch& dispatch = this->world.dispatch();
  dispatch.serialQueue("test.background", QualityOfService::background).async([&] {
    dispatch.serialQueue("test.ordinary", QualityOfService::userInitiated).sync([&] {
      dispatch.globalQueue(QualityOfService::background).sync([&] {
        dispatch.mainQueue().sync([this] { this->diary.write("innermost"); });
      });
    });
    this->diary.write("outermost");
  });
  ASSERT_TRUE(this->world.runUntil(this->diary.holds(2)));
  EXPECT_EQ(this->diary.entries(), (Entries{"innermost", "outermost"}));
}

TYPED_TEST(DispatchSyncContractTest, SyncOnAGlobalQueueFromOneOfItsOwnWorks) {
  DispatchQueue& global = this->world.dispatch().globalQueue(QualityOfService::utility);
  global.async([&] {
    EXPECT_TRUE(global.sync([this] { this->diary.write("inner"); }));
    this->diary.write("outer");
  });
  ASSERT_TRUE(this->world.runUntil(this->diary.holds(2)));
  EXPECT_EQ(this->diary.entries(), (Entries{"inner", "outer"}));
}

TYPED_TEST(DispatchSyncContractTest, WhatASyncWorkHoldsIsReleasedOnTheQueueBeforeTheReturn) {
  auto held = std::make_unique<AtDestruction>([this] {
    this->diary.write(this->serial().isCurrent() ? "released on the queue" : "released elsewhere");
  });
  this->serial().sync([this, held = std::move(held)] { this->diary.write("ran"); });
  EXPECT_EQ(this->diary.entries(), (Entries{"ran", "released on the queue"}));
}

TYPED_TEST(DispatchSyncContractTest, QueueGoesOnAfterASync) {
  for (int round = 0; round < 100; ++round) {
    int seen = -1;
    EXPECT_TRUE(this->serial().sync([&seen, round] { seen = round; }));
    EXPECT_EQ(seen, round);
  }
  this->serial().async([this] { this->diary.write("later"); });
  ASSERT_TRUE(this->world.runUntil(this->diary.holds(1)));
}

TYPED_TEST(DispatchSyncContractTest, SyncWhileTheDispatchIsDestroyedReturnsWithoutHavingRun) {
  const auto held = std::make_shared<int>(0);
  DispatchQueue& serial = this->serial();
  DispatchQueue& main = this->main();
  std::string outcomes;
  const auto syncInVain = [&serial, &main, &outcomes, held] {
    for (DispatchQueue* queue : {&serial, &main}) {
      outcomes += queue->sync([held, &outcomes] { outcomes += "ran "; }) ? "run " : "refused ";
    }
  };
  main.async([guard = std::make_unique<AtDestruction>(syncInVain)] {});
  serial.after(1h, [guard = std::make_unique<AtDestruction>(syncInVain)] {});

  this->world.destroyDispatch();

  EXPECT_EQ(outcomes, "refused refused refused refused ");
  EXPECT_EQ(held.use_count(), 2) << "besides the test's own there is only the copy in `syncInVain`";
}

template <typename World>
using DispatchSyncContractDeathTest = DispatchContractFixture<World>;
TYPED_TEST_SUITE(DispatchSyncContractDeathTest, DispatchSides, DispatchSideNames);

TYPED_TEST(DispatchSyncContractDeathTest, SyncFromAWorkOfTheSameQueue) {
  const auto waitForItself = [this] {
    this->serial().async([this] { this->serial().sync([] {}); });
    static_cast<void>(this->world.runUntil([] { return false; }));
  };
  EXPECT_DEATH(waitForItself(),
               "a work waited for the queue \"test.serial\", which waits for that work");
}

TYPED_TEST(DispatchSyncContractDeathTest, SyncThatComesBackToAQueueThatWaitsForIt) {
  const auto waitInACircle = [this] {
    this->main().async([this] {
      this->serial().sync(
          [this] { this->serial("test.third").sync([this] { this->main().sync([] {}); }); });
    });
    static_cast<void>(this->world.runUntil([] { return false; }));
  };
  EXPECT_DEATH(waitInACircle(), "a work waited for the queue \"main\", which waits for that work");
}

}  // namespace
}  // namespace lanternfold
