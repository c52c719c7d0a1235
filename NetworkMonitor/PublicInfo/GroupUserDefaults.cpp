#include "NetworkMonitor/PublicInfo/GroupUserDefaults.h"

#include <utility>

namespace lanternfold {

UserDefaults& GroupUserDefaults::opened() const {
  const std::scoped_lock guard(mutex_);
  if (suite_) return *suite_;
  suite_ = appGroupId_ ? suites_.suite(*appGroupId_) : suites_.standard();
  isFailureToBeTold_ = suite_ != nullptr;
  // That a group's suite cannot be opened has been said, and the standard one may well have the
  // same fault.
  if (!suite_) suite_ = suites_.standard();
  return *suite_;
}

UserDefaults::Look GroupUserDefaults::object(std::string_view key) const {
  return opened().object(key);
}

void GroupUserDefaults::set(std::string_view key, PropertyListValue value) {
  opened().set(key, std::move(value));
}

void GroupUserDefaults::remove(std::string_view key) { opened().remove(key); }

std::expected<void, UserDefaultsError> GroupUserDefaults::synchronize() {
  auto synchronized = opened().synchronize();
  if (synchronized) return synchronized;
  const std::scoped_lock guard(mutex_);
  if (std::exchange(isFailureToBeTold_, false)) diagnostics_.line(synchronized.error().sentence);
  return synchronized;
}

}  // namespace lanternfold
