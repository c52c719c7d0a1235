// A name finder over paths that a test sets, in virtual time, with a store that remembers.
#pragma once

#include <gtest/gtest.h>

#include "NetworkMonitor/Wlan/NetworkPathWlanInterfaceNameFinder.h"
#include "Tests/Support/FakePathMonitor.h"
#include "Tests/Support/FakeUserDefaults.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {

inline NetworkPath pathOver(std::vector<PathInterface> interfaces) {
  return {.status = PathStatus::satisfied, .availableInterfaces = std::move(interfaces)};
}
inline NetworkPath wifiPath(const char* name) {
  return pathOver({{name, 3, PathInterfaceType::wifi}});
}

/// The caller's wait is what lets time pass; the queues run from `answersAfter_` of it on.
class WlanInterfaceNameFinderFixture : public testing::Test {
 protected:
  using Finder = NetworkPathWlanInterfaceNameFinder;
  using Name = std::optional<std::string>;

  static constexpr const char* cacheKey = "NetworkPathWlanInterfaceNameFinderCache";

  WlanInterfaceNameFinderFixture() {
    clock_.setSleeper([this](std::chrono::nanoseconds duration) {
      clock_.advance(duration);
      waited_ += duration;
      if (waited_ >= answersAfter_) dispatch_.runReady();
    });
  }

  Name find(std::shared_ptr<UserDefaults> userDefaults) {
    waited_ = {};
    return Finder(std::move(userDefaults),
                  {.pathMonitors = paths_, .dispatch = dispatch_, .clock = clock_})
        .wlanInterfaceName();
  }
  Name find() { return find(userDefaults_); }
  Name findWithoutCache() { return find(nullptr); }

  void remember(PropertyListValue value) { userDefaults_->set(cacheKey, std::move(value)); }
  void remember(const char* name, std::chrono::nanoseconds age) {
    remember(PropertyListDictionary{
        {"interfaceName", name},
        {"date",
         clock_.now() - std::chrono::duration_cast<std::chrono::system_clock::duration>(age)}});
  }
  std::optional<PropertyListValue> remembered() { return userDefaults_->object(cacheKey).value(); }
  PropertyListValue entry(const char* name) {
    return PropertyListDictionary{{"interfaceName", name}, {"date", clock_.now()}};
  }
  std::size_t lookups() { return paths_.monitors().size(); }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakePathMonitorFactory paths_{wifiPath("wlan0")};
  const std::shared_ptr<FakeUserDefaults> userDefaults_ = std::make_shared<FakeUserDefaults>();
  std::chrono::nanoseconds answersAfter_{};
  std::chrono::nanoseconds waited_{};
};

}  // namespace lanternfold
