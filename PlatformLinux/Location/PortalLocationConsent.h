// The production side of `LocationConsent` inside a sandbox: the portal decides, and the user's own
// record may withhold more.
//
// Made by: the composition, one per program. Read by: whatever shows Wi-Fi names or asks to.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Platform/LocationManager.h"
#include "PlatformLinux/Location/ConsentAuthority.h"
#include "PlatformLinux/Location/ConsentWatch.h"
#include "PlatformLinux/Location/LocationPortal.h"

namespace lanternfold {

/// Any thread. A consent of the portal is "when in use": it lets an application see the location
/// while it runs, and says nothing of any other time.
///
/// The record holds the portal's last answer, because inside a sandbox its store can usually not be
/// looked at. Where it can, a consent that was taken back there counts at once. Elsewhere the first
/// request of each program asks the portal again, which answers without a word to the user as long
/// as its decision stands.
///
/// A consent of the portal that a manager's request brings does not count when the record has
/// changed since the request: the user has decided otherwise. A refusal counts in any case; one
/// that cannot be recorded for this program alone, until the record changes or the portal answers
/// again.
class PortalLocationConsent final : public LocationConsent, public ConsentAuthority {
 public:
  /// Everything in `surroundings`, and `record`, which is that of `surroundings`, outlive the
  /// consent and every manager that it made.
  PortalLocationConsent(const ConsentSurroundings& surroundings, ConsentRecord& record,
                        std::unique_ptr<LocationPortal> portal);
  ~PortalLocationConsent() override;
  PortalLocationConsent(const PortalLocationConsent&) = delete;
  PortalLocationConsent& operator=(const PortalLocationConsent&) = delete;

  /// The first look at the bus takes a moment, 10 seconds if somebody there does not answer.
  /// Without a portal a line of the log says why, again only after that has changed.
  [[nodiscard]] std::int32_t authorizationStatus() const override;
  [[nodiscard]] std::unique_ptr<LocationManager> makeLocationManager(
      ChangeHandler didChangeAuthorization) override;

  void ask(AnswerHandler handler) override;

 private:
  class Manager;

  void request();
  [[nodiscard]] bool mustAsk(ConsentDecision recorded);
  [[nodiscard]] Answer take(PortalOutcome outcome);
  void keepRefusal(std::optional<ConsentDecision> refused);
  [[nodiscard]] bool isRefusedSince(ConsentDecision recorded) const;
  void compareAll();
  void say(std::string_view line) const;

  const ConsentSurroundings surroundings_;
  ConsentRecord& record_;
  std::atomic<bool> hasVerified_ = false;
  mutable std::mutex mutex_;
  mutable std::string lastLine_;  ///< guarded by mutex_; empty while there is a portal
  std::vector<std::weak_ptr<StatusComparison>> comparisons_;  ///< guarded by mutex_
  /// Guarded by mutex_. Of a refusal that could not be recorded: what the record still says.
  std::optional<ConsentDecision> refused_;
  /// Last, so that it has gone before what its handlers use.
  const std::unique_ptr<LocationPortal> portal_;
};

}  // namespace lanternfold
