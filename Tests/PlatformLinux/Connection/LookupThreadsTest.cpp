#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PlatformLinux/Connection/LookupThreads.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr auto patience = 20s;

/// Works that block until the test lets them go.
class Gate {
 public:
  void pass() {
    std::unique_lock lock(mutex_);
    ++begun_;
    most_ = std::max(most_, begun_ - ended_);
    changed_.notify_all();
    changed_.wait(lock, [this] { return isOpen_; });
    ++ended_;
    changed_.notify_all();
  }
  void open() {
    const std::lock_guard lock(mutex_);
    isOpen_ = true;
    changed_.notify_all();
  }
  bool waitUntilBegun(int count) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, patience, [&] { return begun_ >= count; });
  }
  bool waitUntilEnded(int count) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, patience, [&] { return ended_ >= count; });
  }
  [[nodiscard]] int begun() {
    const std::lock_guard lock(mutex_);
    return begun_;
  }
  /// At one time.
  [[nodiscard]] int most() {
    const std::lock_guard lock(mutex_);
    return most_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  int begun_ = 0;
  int ended_ = 0;
  int most_ = 0;
  bool isOpen_ = false;
};

/// Of this process.
int lookupThreadCount() {
  int count = 0;
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    std::string name;
    std::getline(std::ifstream(task.path() / "comm"), name);
    if (name == "address-lookup") ++count;
  }
  return count;
}

bool waitUntilNoThreadIsLeft() {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (lookupThreadCount() > 0) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(1ms);
  }
  return true;
}

TEST(LookupThreadsTest, RunSoManyAtATimeAndTheRestInTurn) {
  constexpr int most = 32;
  constexpr int works = 200;
  ASSERT_TRUE(waitUntilNoThreadIsLeft());  // of another test
  const auto gate = std::make_shared<Gate>();
  const auto threads = std::make_shared<LookupThreads>();
  for (int number = 0; number < works; ++number) {
    ASSERT_TRUE(threads->run([gate] { gate->pass(); }));
  }
  ASSERT_TRUE(gate->waitUntilBegun(most));
  EXPECT_EQ(lookupThreadCount(), most);
  EXPECT_EQ(gate->begun(), most);
  gate->open();
  ASSERT_TRUE(gate->waitUntilEnded(works));
  EXPECT_EQ(gate->most(), most);
}

TEST(LookupThreadsTest, AreNoneWhenNothingIsToBeDone) {
  const auto gate = std::make_shared<Gate>();
  const auto threads = std::make_shared<LookupThreads>(2);
  EXPECT_TRUE(waitUntilNoThreadIsLeft());
  for (int number = 0; number < 3; ++number) {
    ASSERT_TRUE(threads->run([gate] { gate->pass(); }));
  }
  gate->open();
  ASSERT_TRUE(gate->waitUntilEnded(3));
  EXPECT_TRUE(waitUntilNoThreadIsLeft());
  ASSERT_TRUE(threads->run([gate] { gate->pass(); }));
  EXPECT_TRUE(gate->waitUntilEnded(4));
}

TEST(LookupThreadsTest, OutliveWhoeverMadeThem) {
  const auto gate = std::make_shared<Gate>();
  auto threads = std::make_shared<LookupThreads>(1);
  ASSERT_TRUE(threads->run([gate] { gate->pass(); }));
  ASSERT_TRUE(threads->run([gate] { gate->pass(); }));
  threads.reset();
  gate->open();
  EXPECT_TRUE(gate->waitUntilEnded(2));
}

/// Threads that run when the test says so, and that there may be none of.
class PlayedThreads {
 public:
  LookupThreads::StartThread starter() {
    return [this](LookupThreads::Work work) {
      if (areRefused) throw std::system_error(refusal);
      started.push_back(std::move(work));
    };
  }
  void runFirst() {
    LookupThreads::Work work = std::move(started.front());
    started.erase(started.begin());
    work();
  }

  const std::error_code refusal = std::make_error_code(std::errc::resource_unavailable_try_again);
  bool areRefused = false;
  std::vector<LookupThreads::Work> started;
};

class PlayedLookupThreadsTest : public testing::Test {
 protected:
  LookupThreads::Work note(int number) {
    return [this, number] { done_.push_back(number); };
  }

  PlayedThreads played_;
  std::shared_ptr<LookupThreads> threads_ = std::make_shared<LookupThreads>(2, played_.starter());
  std::vector<int> done_;
};

TEST_F(PlayedLookupThreadsTest, TakeWorksInTheirOrder) {
  for (int number = 1; number <= 4; ++number) ASSERT_TRUE(threads_->run(note(number)));
  EXPECT_EQ(played_.started.size(), 2U);
  EXPECT_THAT(done_, IsEmpty());
  played_.runFirst();
  EXPECT_THAT(done_, ElementsAre(1, 2, 3, 4));
}

TEST_F(PlayedLookupThreadsTest, NeverBeginWhatWasWithdrawn) {
  const auto held = std::make_shared<int>();
  const std::weak_ptr<int> weak = held;
  ASSERT_TRUE(threads_->run(note(1)));
  const auto ticket = threads_->run([held, run = note(2)]() mutable { run(); });
  ASSERT_TRUE(threads_->run(note(3)));
  threads_->withdraw(*ticket);
  threads_->withdraw(*ticket);
  EXPECT_EQ(weak.use_count(), 1);  // the test's own
  played_.runFirst();
  threads_->withdraw(*ticket);
  EXPECT_THAT(done_, ElementsAre(1, 3));
}

TEST_F(PlayedLookupThreadsTest, SayWhenThereIsNoThreadToBeHad) {
  played_.areRefused = true;
  const auto ticket = threads_->run(note(1));
  ASSERT_FALSE(ticket);
  EXPECT_EQ(ticket.error(), played_.refusal);
  played_.areRefused = false;
  ASSERT_TRUE(threads_->run(note(2)));
  played_.runFirst();
  EXPECT_THAT(done_, ElementsAre(2));
}

TEST_F(PlayedLookupThreadsTest, MakeDoWithTheThreadsThatTheyHave) {
  ASSERT_TRUE(threads_->run(note(1)));
  played_.areRefused = true;
  ASSERT_TRUE(threads_->run(note(2)));
  played_.runFirst();
  EXPECT_THAT(done_, ElementsAre(1, 2));
}

}  // namespace
}  // namespace lanternfold
