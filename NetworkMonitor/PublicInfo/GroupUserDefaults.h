// The settings that an application group shares, opened when they are first asked for.
//
// Made by: the production graph. Read by: the cache of the public information.
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "Platform/DiagnosticLog.h"
#include "Platform/UserDefaults.h"

namespace lanternfold {

/// The suite of the group; the standard one without a group, or when that suite cannot be opened.
/// A monitor that is not asked for the internet side opens no database. The first failure to bring
/// something to the disk is a line among the diagnostics: otherwise a service would be asked again
/// and again for what cannot be kept, and nobody would know why. Any thread.
class GroupUserDefaults final : public UserDefaults {
 public:
  /// References outlive it.
  GroupUserDefaults(UserDefaultsSuites& suites, std::optional<std::string> appGroupId,
                    DiagnosticLog& diagnostics)
      : suites_(suites), appGroupId_(std::move(appGroupId)), diagnostics_(diagnostics) {}

  [[nodiscard]] Look object(std::string_view key) const override;
  void set(std::string_view key, PropertyListValue value) override;
  void remove(std::string_view key) override;
  [[nodiscard]] std::expected<void, UserDefaultsError> synchronize() override;

 private:
  [[nodiscard]] UserDefaults& opened() const;

  UserDefaultsSuites& suites_;
  const std::optional<std::string> appGroupId_;
  DiagnosticLog& diagnostics_;
  mutable std::mutex mutex_;
  // Guarded by mutex_.
  mutable std::shared_ptr<UserDefaults> suite_;
  /// Until it was told; never of the suite that stands in for one that could not be opened.
  mutable bool isFailureToBeTold_ = false;
};

}  // namespace lanternfold
