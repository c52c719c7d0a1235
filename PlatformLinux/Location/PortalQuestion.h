// One question to the location portal, from the session to the user's answer.
//
// Made by: `PortalConversations`, one at a time. Internal to this folder: it brings in GLib.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "PlatformLinux/Location/PortalSession.h"
#include "PlatformLinux/Location/PortalSurroundings.h"

namespace lanternfold {

/// Everything on the bus's thread.
class PortalQuestion : public std::enable_shared_from_this<PortalQuestion> {
 public:
  /// `ended` is called once, unless the question is destroyed before.
  PortalQuestion(BusThread& thread, std::shared_ptr<MessageBus> bus, PortalLimits limits,
                 PortalSession::OutcomeHandler ended);
  /// A dialog that is open is taken back.
  ~PortalQuestion();
  PortalQuestion(const PortalQuestion&) = delete;
  PortalQuestion& operator=(const PortalQuestion&) = delete;

  /// Once.
  void begin();
  /// Ends it, with this outcome, if it has not ended.
  void end(PortalOutcome outcome);

 private:
  void listenForAnswer(const std::string& path);
  void listenForEnd(const std::string& path);
  void sessionIsOpen(PortalOutcome outcome);
  void start();
  void takeHandle(const MessageBus::Reply& reply);
  void takeBack();

  BusThread& thread_;
  const std::shared_ptr<MessageBus> bus_;
  const PortalLimits limits_;
  PortalSession::OutcomeHandler ended_;  ///< empty after the end
  const std::string token_ = unguessableToken();
  std::shared_ptr<PortalSession> session_;
  BusTimer deadline_;
  std::string requestPath_;
  std::vector<std::unique_ptr<MessageBus::Subscription>> subscriptions_;
};

}  // namespace lanternfold
