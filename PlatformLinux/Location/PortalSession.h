// A location session of the portal: its creation, which asks nobody, and its end.
//
// Made by: `PortalConversations`, to see whether the portal can be asked; `PortalQuestion`, to ask.
// Internal to this folder: it brings in GLib.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "PlatformLinux/Bus/MessageBus.h"
#include "PlatformLinux/Location/PortalRules.h"

namespace lanternfold {

inline constexpr const char* portalBusName = "org.freedesktop.portal.Desktop";
inline constexpr const char* portalObject = "/org/freedesktop/portal/desktop";
inline constexpr const char* locationInterface = "org.freedesktop.portal.Location";

/// The last element of a path, which nobody can guess.
[[nodiscard]] std::string unguessableToken();

/// Everything on the bus's thread.
class PortalSession : public std::enable_shared_from_this<PortalSession> {
 public:
  using OutcomeHandler = std::function<void(PortalOutcome)>;

  explicit PortalSession(std::shared_ptr<MessageBus> bus) : bus_(std::move(bus)) {}
  /// Closes the session.
  ~PortalSession();
  PortalSession(const PortalSession&) = delete;
  PortalSession& operator=(const PortalSession&) = delete;

  /// Once. `opened` hears `offered`, or why there is no session, within `limit`; not after the
  /// destruction.
  void open(std::chrono::milliseconds limit, OutcomeHandler opened);

  /// Of an open session; empty otherwise.
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  const std::shared_ptr<MessageBus> bus_;
  std::string path_;
};

}  // namespace lanternfold
