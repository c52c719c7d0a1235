// The location portal and its permission store on a session bus.
//
// Made by: the composition inside a sandbox. Read by: `PortalLocationConsent`.
#pragma once

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "PlatformLinux/Location/LocationPortal.h"
#include "PlatformLinux/Location/PortalSurroundings.h"

namespace lanternfold {

/// Speaks with the bus on a thread of its own. A bus that hangs holds nobody up for longer than the
/// limit of a look; what the look finds after that is a change.
class BusLocationPortal final : public LocationPortal {
 public:
  explicit BusLocationPortal(PortalSurroundings surroundings);
  ~BusLocationPortal() override;
  BusLocationPortal(const BusLocationPortal&) = delete;
  BusLocationPortal& operator=(const BusLocationPortal&) = delete;

  void setChangeHandler(ChangeHandler handler) override;
  [[nodiscard]] PortalKnowledge knowledge() override;
  void ask(AnswerHandler handler) override;

 private:
  struct Conversing;  ///< the thread, and what is said on it

  void learn(const PortalKnowledge& knowledge);

  const std::chrono::milliseconds lookLimit_;
  ChangeHandler changed_;
  std::mutex mutex_;
  std::condition_variable learned_;
  // Guarded by mutex_:
  bool hasBegun_ = false;
  bool hasLooked_ = false;
  std::chrono::steady_clock::time_point lookDeadline_;
  PortalKnowledge knowledge_;

  const std::unique_ptr<Conversing> conversing_;
};

}  // namespace lanternfold
