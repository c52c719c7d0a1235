// How the desktop wants programs to look, as the desktop portal's settings say it.
//
// Made by: the composition of a program with windows, whose main loop is GLib's.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Platform/DesktopAppearance.h"
#include "Platform/Dispatch.h"

namespace lanternfold {

/// Main thread, which runs GLib's default main context; nothing waits for the portal. Without a bus
/// or a portal there is no preference; a portal that comes later, or anew, is asked then. When it
/// goes away its last word stands.
class PortalAppearance final : public DesktopAppearance {
 public:
  /// `busAddress` is the session bus's, none without a session. `mainQueue` outlives the
  /// appearance.
  PortalAppearance(std::optional<std::string> busAddress, DispatchQueue& mainQueue);
  ~PortalAppearance() override;
  PortalAppearance(const PortalAppearance&) = delete;
  PortalAppearance& operator=(const PortalAppearance&) = delete;

  void start(std::function<void(PreferredColourScheme)> changed) override;

 private:
  class Watch;
  const std::shared_ptr<Watch> watch_;
};

}  // namespace lanternfold
