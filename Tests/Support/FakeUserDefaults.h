// Suites of user defaults in memory, and a disk that a test can make refuse writing or reading.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "Platform/GroupContainer.h"
#include "Platform/UserDefaults.h"
#include "Support/FatalError.h"

namespace lanternfold {

/// What the suites' programs share: every suite's values, whether the disk takes new ones and
/// whether it gives out those it has.
struct FakeUserDefaultsDisk {
  using Values = std::map<std::string, PropertyListValue, std::less<>>;

  std::mutex mutex;
  std::map<std::string, Values, std::less<>> suites;
  bool isFailing = false;
  bool isUnreadable = false;
};

/// One program's view of one suite.
class FakeUserDefaults final : public UserDefaults {
 public:
  FakeUserDefaults(std::shared_ptr<FakeUserDefaultsDisk> disk, std::string suite)
      : disk_(std::move(disk)), suite_(std::move(suite)) {}
  /// One on a disk of its own.
  FakeUserDefaults() : FakeUserDefaults(std::make_shared<FakeUserDefaultsDisk>(), "standard") {}

  /// What is set from now on stays in this program's memory, and `synchronize` fails.
  void setDiskFailing(bool failing) {
    const std::lock_guard lock(disk_->mutex);
    disk_->isFailing = failing;
  }

  /// From now on only what stays in this program's memory can be looked up.
  void setDiskUnreadable(bool unreadable) {
    const std::lock_guard lock(disk_->mutex);
    disk_->isUnreadable = unreadable;
  }

  [[nodiscard]] Look object(std::string_view key) const override {
    const std::lock_guard lock(disk_->mutex);
    if (const auto kept = pending_.find(key); kept != pending_.end()) return kept->second;
    if (disk_->isUnreadable) {
      return std::unexpected(UserDefaultsError{"the settings cannot be read: the disk fails"});
    }
    const auto& values = disk_->suites[suite_];
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
  }

  void set(std::string_view key, PropertyListValue value) override {
    if (!isUserDefaultsValue(value)) {
      fatalError("user defaults were given a value of a kind that they do not store");
    }
    change(key, std::move(value));
  }

  void remove(std::string_view key) override { change(key, std::nullopt); }

  [[nodiscard]] std::expected<void, UserDefaultsError> synchronize() override {
    const std::lock_guard lock(disk_->mutex);
    if (disk_->isFailing) {
      return std::unexpected(UserDefaultsError{"the settings cannot be written: the disk is full"});
    }
    for (auto& [key, value] : std::exchange(pending_, {})) store(key, std::move(value));
    return {};
  }

 private:
  using Change = std::optional<PropertyListValue>;  // none is a removal

  void change(std::string_view key, Change change) {
    const std::lock_guard lock(disk_->mutex);
    if (disk_->isFailing) {
      pending_.insert_or_assign(std::string(key), std::move(change));
    } else {
      pending_.erase(std::string(key));
      store(key, std::move(change));
    }
  }

  void store(std::string_view key, Change change) {
    auto& values = disk_->suites[suite_];
    if (change) {
      values.insert_or_assign(std::string(key), *std::move(change));
    } else {
      values.erase(std::string(key));
    }
  }

  const std::shared_ptr<FakeUserDefaultsDisk> disk_;
  const std::string suite_;
  std::map<std::string, Change, std::less<>> pending_;
};

/// One program's suites; several of them may share a disk.
class FakeUserDefaultsSuites final : public UserDefaultsSuites {
 public:
  explicit FakeUserDefaultsSuites(
      std::shared_ptr<FakeUserDefaultsDisk> disk = std::make_shared<FakeUserDefaultsDisk>())
      : disk_(std::move(disk)) {}

  /// What is set from now on stays in memory, and every suite's `synchronize` fails.
  void setDiskFailing(bool failing) {
    const std::lock_guard lock(disk_->mutex);
    disk_->isFailing = failing;
  }
  /// Suites of groups cannot be opened from now on.
  void setRefusing(bool refusing) { isRefusing_ = refusing; }

  [[nodiscard]] std::shared_ptr<UserDefaults> standard() override { return opened("standard"); }
  [[nodiscard]] std::shared_ptr<UserDefaults> suite(std::string_view name) override {
    return isRefusing_ || !isGroupIdentifier(name) ? nullptr : opened(name);
  }

 private:
  std::shared_ptr<UserDefaults> opened(std::string_view name) {
    auto& suite = opened_[std::string(name)];
    if (!suite) suite = std::make_shared<FakeUserDefaults>(disk_, std::string(name));
    return suite;
  }

  const std::shared_ptr<FakeUserDefaultsDisk> disk_;
  std::map<std::string, std::shared_ptr<FakeUserDefaults>> opened_;
  bool isRefusing_ = false;
};

}  // namespace lanternfold
