// What the contract tests of the dispatch seam share: what works write down, and the worlds.
#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Tests/PlatformLinux/Contracts/DispatchWorlds.h"

namespace lanternfold {

/// What works wrote down, from any thread.
class Diary {
 public:
  void write(std::string entry) {
    const std::lock_guard lock(mutex_);
    entries_.push_back(std::move(entry));
  }
  [[nodiscard]] std::vector<std::string> entries() const {
    const std::lock_guard lock(mutex_);
    return entries_;
  }
  [[nodiscard]] std::function<bool()> holds(std::size_t count) const {
    return [this, count] { return entries().size() >= count; };
  }

 private:
  mutable std::mutex mutex_;
  std::vector<std::string> entries_;
};

using Entries = std::vector<std::string>;

/// Calls a function when it is destroyed: stands for what a work holds.
class AtDestruction {
 public:
  explicit AtDestruction(std::function<void()> action) : action_(std::move(action)) {}
  ~AtDestruction() { action_(); }
  AtDestruction(const AtDestruction&) = delete;
  AtDestruction& operator=(const AtDestruction&) = delete;

 private:
  std::function<void()> action_;
};

template <typename World>
class DispatchContractFixture : public testing::Test {
 protected:
  [[nodiscard]] DispatchQueue& serial(std::string_view label = "test.serial") {
    return world.dispatch().serialQueue(label, QualityOfService::userInitiated);
  }
  [[nodiscard]] DispatchQueue& main() { return world.dispatch().mainQueue(); }

  Diary diary;  // outlives the works that write into it
  World world;
};

using DispatchSides = testing::Types<AsioWorld, GlibWorld, SimulatedWorld>;

class DispatchSideNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    if (std::is_same_v<World, AsioWorld>) return "Asio";
    return std::is_same_v<World, GlibWorld> ? "Glib" : "Simulated";
  }
};

}  // namespace lanternfold
