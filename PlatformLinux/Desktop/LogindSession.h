// What the system's login manager says of this session: locked or not, and awake again.
//
// Made by: the composition of a program with windows, whose main loop is GLib's.
#pragma once

#include <chrono>
#include <memory>
#include <optional>
#include <string>

#include "Platform/Dispatch.h"
#include "Platform/LoginSession.h"

namespace lanternfold {

/// Main thread, which runs GLib's default main context; nothing waits for the bus. Without a bus,
/// without a login manager on it or a session that it knows, nothing is ever said; a login manager
/// that comes later, or anew, is asked then. When the bus goes away the session counts as unlocked.
class LogindSession final : public LoginSession {
 public:
  struct Surroundings {
    std::string busAddress;
    /// As the environment names it (XDG_SESSION_ID); empty when it does not. Otherwise the session
    /// is that of this process, or the user's graphical one.
    std::string sessionId;
    /// How long a session that was asked to lock counts as locked while nobody says that it is:
    /// some programs that lock the screen never tell when it is unlocked.
    std::chrono::nanoseconds unconfirmedLock = std::chrono::minutes(1);
  };

  /// `mainQueue` outlives the session.
  LogindSession(Surroundings surroundings, DispatchQueue& mainQueue);
  ~LogindSession() override;
  LogindSession(const LogindSession&) = delete;
  LogindSession& operator=(const LogindSession&) = delete;

  void start(Handlers handlers) override;

 private:
  class Watch;
  const std::shared_ptr<Watch> watch_;
};

}  // namespace lanternfold
