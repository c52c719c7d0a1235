// Which of the login manager's sessions is this program's.
//
// Made by: `LogindSession`, for each login manager that it meets. Internal to this folder: it
// brings in GLib.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "PlatformLinux/Bus/MessageBus.h"

namespace lanternfold {

/// On the main thread. Asks for the session of the given id, then for that of this process, then
/// for the user's graphical one: a program that the user's service manager has started belongs to
/// no session.
class SessionSearch : public std::enable_shared_from_this<SessionSearch> {
 public:
  /// `found` hears the session's path, or nothing at all; not after the destruction.
  SessionSearch(std::shared_ptr<MessageBus> bus, std::string sessionId,
                std::function<void(const std::string& path)> found);

  /// Once.
  void begin();

 private:
  using Step = void (SessionSearch::*)();

  void askById();
  void askByProcess();
  void askForUser();
  void askForDisplay(const std::string& userPath);
  void askManager(const char* method, GVariant* arguments,
                  std::function<void(const MessageBus::Reply&)> handler);
  /// What `reply` names, or the next step.
  void take(const MessageBus::Reply& reply, Step next);

  const std::shared_ptr<MessageBus> bus_;
  const std::string sessionId_;
  const std::function<void(const std::string&)> found_;
};

}  // namespace lanternfold
