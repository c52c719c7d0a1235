#include "NetworkMonitor/Wlan/NetworkPathWlanInterfaceNameFinder.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace lanternfold {
namespace {

constexpr std::chrono::milliseconds timeBetweenLooks{1};

}  // namespace

/// One wait for a path. Held by the handler too, which may still run when the wait is over.
class NetworkPathWlanInterfaceNameFinder::Lookup {
 public:
  /// Ends the wait. Later calls do nothing: a path may change before its monitor is cancelled.
  void leave(const NetworkPath& path) {
    const std::lock_guard lock(mutex_);
    if (std::exchange(hasLeft_, true) || path.availableInterfaces.empty()) return;
    interfaceName_ = path.availableInterfaces.front().name;
  }

  [[nodiscard]] bool hasLeft() const {
    const std::lock_guard lock(mutex_);
    return hasLeft_;
  }
  [[nodiscard]] std::optional<std::string> interfaceName() const {
    const std::lock_guard lock(mutex_);
    return interfaceName_;
  }

 private:
  mutable std::mutex mutex_;
  bool hasLeft_ = false;                      // guarded by mutex_
  std::optional<std::string> interfaceName_;  // guarded by mutex_
};

NetworkPathWlanInterfaceNameFinder::NetworkPathWlanInterfaceNameFinder(
    std::shared_ptr<UserDefaults> userDefaults, const Environment& environment)
    : userDefaults_(std::move(userDefaults)), environment_(environment) {}

std::optional<std::string> NetworkPathWlanInterfaceNameFinder::wlanInterfaceName() {
  if (auto cached = cachedName()) return cached;
  auto name = currentName();
  if (name && userDefaults_) {
    userDefaults_->set(
        cacheKey, PropertyListDictionary{{nameKey, *name}, {dateKey, environment_.clock.now()}});
  }
  return name;
}

std::optional<std::string> NetworkPathWlanInterfaceNameFinder::cachedName() const {
  if (!userDefaults_) return std::nullopt;
  const auto look = userDefaults_->object(cacheKey);
  if (!look || !look->has_value()) return std::nullopt;
  const PropertyListDictionary* cache = (*look)->asDictionary();
  if (cache == nullptr) return std::nullopt;
  const PropertyListValue* name = cache->find(nameKey);
  const PropertyListValue* date = cache->find(dateKey);
  if (name == nullptr || name->asString() == nullptr) return std::nullopt;
  if (date == nullptr || date->asDate() == nullptr) return std::nullopt;
  // Not the difference of the two, which a date of long ago would carry out of range.
  if (*date->asDate() <= environment_.clock.now() - cacheLifetime) return std::nullopt;
  return *name->asString();
}

std::optional<std::string> NetworkPathWlanInterfaceNameFinder::currentName() const {
  const auto lookup = std::make_shared<Lookup>();
  const auto monitor = environment_.pathMonitors.makePathMonitor(PathInterfaceType::wifi);
  monitor->setPathUpdateHandler([lookup](const NetworkPath& path) { lookup->leave(path); });
  monitor->start(environment_.dispatch.globalQueue(QualityOfService::userInitiated));
  waitFor(*lookup);
  monitor->cancel();
  return lookup->interfaceName();
}

void NetworkPathWlanInterfaceNameFinder::waitFor(const Lookup& lookup) const {
  const Clock& clock = environment_.clock;
  const auto end = clock.steadyNow() + longestWait;
  while (!lookup.hasLeft() && clock.steadyNow() < end) {
    clock.sleep(std::min<std::chrono::nanoseconds>(timeBetweenLooks, end - clock.steadyNow()));
  }
}

}  // namespace lanternfold
