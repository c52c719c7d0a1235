// What is said on the portal's bus: the first look, questions one at a time, the store's changes.
//
// Made by: `BusLocationPortal`. Internal to this folder: it brings in sdbus-c++.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "PlatformLinux/Location/BusOnLoop.h"
#include "PlatformLinux/Location/LocationPortal.h"
#include "PlatformLinux/Location/PermissionStoreWatch.h"
#include "PlatformLinux/Location/PortalQuestion.h"
#include "PlatformLinux/Location/PortalSession.h"
#include "PlatformLinux/Location/PortalSurroundings.h"

namespace lanternfold {

/// Everything but the constructor on the loop's thread.
class PortalConversations : public std::enable_shared_from_this<PortalConversations> {
 public:
  using LearnHandler = std::function<void(const PortalKnowledge&)>;

  /// `learned` is called when the first look is over, and after each change from then on.
  PortalConversations(EventLoop& loop, PortalSurroundings surroundings, LearnHandler learned);
  PortalConversations(const PortalConversations&) = delete;
  PortalConversations& operator=(const PortalConversations&) = delete;
  ~PortalConversations() = default;

  /// Connects and looks; the second call does nothing.
  void begin();
  /// `handler` hears the answer of the next question, or of the one under way.
  void ask(LocationPortal::AnswerHandler handler);
  /// Before the destruction, not by a handler. No handler is called afterwards.
  void end();

 private:
  enum class State : std::uint8_t { idle, connecting, connected, over };
  /// Shared with the thread that connects, which may outlive everything else.
  struct Connecting {
    std::mutex mutex;
    EventLoop* loop = nullptr;  ///< guarded by mutex; null when nobody wants the connection
  };

  static void connect(Connecting& connecting, const std::string& address,
                      std::weak_ptr<PortalConversations> conversations);
  void connected(std::unique_ptr<sdbus::IConnection> connection);
  void followOwner();
  void ownerHasChanged(sdbus::Message& message);
  void lookAtPortal();
  void learnOfPortal(PortalOutcome outcome);
  void learnOfStore(StoredPermission stored);
  void beginQuestion();
  void takeAnswer(PortalOutcome outcome);
  void tell(PortalOutcome outcome);
  void busIsLost();

  EventLoop& loop_;
  const PortalSurroundings surroundings_;
  LearnHandler learned_;
  State state_ = State::idle;
  PortalKnowledge knowledge_;
  bool isPortalKnown_ = false;
  bool isStoreKnown_ = false;
  std::vector<LocationPortal::AnswerHandler> asking_;

  const std::shared_ptr<Connecting> connecting_ = std::make_shared<Connecting>();
  std::shared_ptr<BusOnLoop> bus_;
  sdbus::Slot ownerChanges_;
  std::shared_ptr<PermissionStoreWatch> store_;
  std::shared_ptr<PortalSession> look_;
  std::shared_ptr<PortalQuestion> question_;
};

}  // namespace lanternfold
