// A location session of the portal: its creation, which asks nobody, and its end.
//
// Made by: `BusLocationPortal`, to see whether the portal can be asked; `PortalQuestion`, to ask.
// Internal to this folder: it brings in sdbus-c++.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "PlatformLinux/Location/BusOnLoop.h"
#include "PlatformLinux/Location/PortalRules.h"

namespace lanternfold {

inline constexpr const char* portalBusName = "org.freedesktop.portal.Desktop";
inline constexpr const char* locationInterface = "org.freedesktop.portal.Location";

/// The last element of a path, which nobody can guess.
[[nodiscard]] std::string unguessableToken();

/// Everything on the loop's thread. It is destroyed by a post to the loop, not by a handler.
class PortalSession : public std::enable_shared_from_this<PortalSession> {
 public:
  using OutcomeHandler = std::function<void(PortalOutcome)>;

  explicit PortalSession(std::shared_ptr<BusOnLoop> bus) : bus_(std::move(bus)) {}
  /// Closes the session.
  ~PortalSession();
  PortalSession(const PortalSession&) = delete;
  PortalSession& operator=(const PortalSession&) = delete;

  /// Once. `opened` hears `offered`, or why there is no session, within `limit`.
  void open(std::chrono::milliseconds limit, OutcomeHandler opened);

  /// Of an open session: its path, and the portal's own name on the bus.
  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] const std::string& owner() const { return owner_; }

 private:
  [[nodiscard]] PortalOutcome take(sdbus::MethodReply& reply, const sdbus::Error* error);

  const std::shared_ptr<BusOnLoop> bus_;
  std::unique_ptr<sdbus::IProxy> desktop_;
  std::string path_;
  std::string owner_;
};

}  // namespace lanternfold
