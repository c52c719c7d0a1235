// The user's consent as a program without a window reads it: known and heard of, and asked for by
// somebody else.
//
// Made by: `LinuxMachine`. Told by: the extension's session, of what its host says. Read by:
// timeline providers, the Wi-Fi client.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "Platform/LocationManager.h"

namespace lanternfold {

/// Nobody is asked as long as nobody was named who asks: a command ends as soon as its output is
/// written, which would take a dialog away from the user before he has read it.
class RelayedConsent final : public LocationConsent {
 public:
  /// Has the user asked; `whenInUse` says for how much. Main queue.
  using Ask = std::function<void(bool whenInUse)>;

  /// `consent` outlives this, and this outlives every manager of it.
  explicit RelayedConsent(LocationConsent& consent) : consent_(consent) {}
  ~RelayedConsent() override;

  /// Main queue; an empty one asks nobody.
  void setAsk(Ask ask) { ask_ = std::move(ask); }

  /// What somebody else knows of the consent, a raw value. It can withhold the names and never
  /// release them: a refusal stands in for an allowance, and for what is not determined here, so
  /// that the user is not asked again. The managers hear of it. Main queue.
  void tell(std::int32_t status);

  [[nodiscard]] std::int32_t authorizationStatus() const override;
  [[nodiscard]] std::unique_ptr<LocationManager> makeLocationManager(
      ChangeHandler didChangeAuthorization) override;

 private:
  class Manager;

  LocationConsent& consent_;
  Ask ask_;
  std::vector<Manager*> managers_;  ///< main queue
  mutable std::mutex mutex_;
  std::optional<std::int32_t> told_;  ///< guarded by mutex_
};

}  // namespace lanternfold
