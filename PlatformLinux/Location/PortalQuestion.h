// One question to the location portal, from the session to the user's answer.
//
// Made by: `BusLocationPortal`, one at a time. Internal to this folder: it brings in sdbus-c++.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <asio/io_context.hpp>
#include <asio/steady_timer.hpp>

#include "PlatformLinux/Location/PortalSession.h"
#include "PlatformLinux/Location/PortalSurroundings.h"

namespace lanternfold {

/// Everything on the loop's thread. It is destroyed by a post to the loop, not by its handler.
class PortalQuestion : public std::enable_shared_from_this<PortalQuestion> {
 public:
  /// `ended` is called once, unless the question is destroyed before.
  PortalQuestion(std::shared_ptr<BusOnLoop> bus, PortalLimits limits,
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
  using Proxy = std::unique_ptr<sdbus::IProxy>;

  [[nodiscard]] Proxy listenTo(const std::string& path, const char* interface, const char* signal,
                               std::function<PortalOutcome(sdbus::Signal&)> outcomeOf);
  void listenForAnswer(const std::string& path);
  void sessionIsOpen(PortalOutcome outcome);
  void start();
  void takeHandle(sdbus::MethodReply& reply, const sdbus::Error* error);
  void takeBack();

  const std::shared_ptr<BusOnLoop> bus_;
  const PortalLimits limits_;
  PortalSession::OutcomeHandler ended_;  ///< empty after the end
  const std::string token_ = unguessableToken();
  const std::shared_ptr<PortalSession> session_;
  asio::steady_timer deadline_;
  std::string requestPath_;
  Proxy request_;
  Proxy otherRequest_;  ///< of a portal that gives the request another path than the usual one
  Proxy sessionEnd_;
  Proxy desktop_;
};

}  // namespace lanternfold
