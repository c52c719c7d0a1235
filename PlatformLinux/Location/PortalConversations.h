// What is said on the portal's bus: the first look, questions one at a time, the store's changes.
//
// Made by: `BusLocationPortal`. Internal to this folder: it brings in GLib.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "PlatformLinux/Location/LocationPortal.h"
#include "PlatformLinux/Location/PermissionStoreWatch.h"
#include "PlatformLinux/Location/PortalQuestion.h"
#include "PlatformLinux/Location/PortalSession.h"
#include "PlatformLinux/Location/PortalSurroundings.h"

namespace lanternfold {

/// Everything but the constructor on the bus's thread.
class PortalConversations {
 public:
  using LearnHandler = std::function<void(const PortalKnowledge&)>;

  /// `learned` is called when the first look is over, and after each further one.
  PortalConversations(BusThread& thread, PortalSurroundings surroundings, LearnHandler learned);
  PortalConversations(const PortalConversations&) = delete;
  PortalConversations& operator=(const PortalConversations&) = delete;
  /// After `end`.
  ~PortalConversations() = default;

  /// Connects and looks; the second call does nothing.
  void begin();
  /// `handler` hears the answer of the next question, or of the one under way.
  void ask(LocationPortal::AnswerHandler handler);
  /// Once, not by a handler. No handler is called afterwards.
  void end();

 private:
  enum class State : std::uint8_t { idle, connecting, connected, over };

  void takeConnection(bool isConnected);
  void ownerHasChanged(const std::string& newOwner);
  void lookAtPortal();
  void learnOfPortal(PortalOutcome outcome);
  void learnOfStore(StoredPermission stored);
  void beginQuestion();
  void takeAnswer(PortalOutcome outcome);
  void tell(PortalOutcome outcome);
  void busIsLost();

  BusThread& thread_;
  const PortalSurroundings surroundings_;
  LearnHandler learned_;
  State state_ = State::idle;
  PortalKnowledge knowledge_;
  bool isPortalKnown_ = false;
  bool isStoreKnown_ = false;
  std::vector<LocationPortal::AnswerHandler> asking_;
  BusTimer connectDeadline_;

  const std::shared_ptr<MessageBus> bus_;
  std::unique_ptr<MessageBus::Subscription> ownerChanges_;
  std::shared_ptr<PermissionStoreWatch> store_;
  std::shared_ptr<PortalSession> look_;
  std::shared_ptr<PortalQuestion> question_;
};

}  // namespace lanternfold
