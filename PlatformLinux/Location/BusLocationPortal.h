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
#include "PlatformLinux/System/EventLoop.h"

namespace lanternfold {

class PortalConversations;

/// The bus is connected to at the first call, on a thread that nobody waits for: one that hangs
/// holds nobody up. Everything else runs on the loop's thread, which may wait for the bus for a
/// moment, though never for the portal; hence the loop should serve nobody else.
class BusLocationPortal final : public LocationPortal {
 public:
  /// `loop` outlives the portal.
  BusLocationPortal(EventLoop& loop, PortalSurroundings surroundings);
  ~BusLocationPortal() override;
  BusLocationPortal(const BusLocationPortal&) = delete;
  BusLocationPortal& operator=(const BusLocationPortal&) = delete;

  void setChangeHandler(ChangeHandler handler) override;
  [[nodiscard]] PortalKnowledge knowledge() override;
  void ask(AnswerHandler handler) override;

 private:
  void learn(const PortalKnowledge& knowledge);

  EventLoop& loop_;
  const std::chrono::milliseconds lookLimit_;
  ChangeHandler changed_;
  std::mutex mutex_;
  std::condition_variable learned_;
  // Guarded by mutex_:
  bool hasBegun_ = false;
  bool hasLooked_ = false;
  std::chrono::steady_clock::time_point lookDeadline_;
  PortalKnowledge knowledge_;

  const std::shared_ptr<PortalConversations> conversations_;
};

}  // namespace lanternfold
