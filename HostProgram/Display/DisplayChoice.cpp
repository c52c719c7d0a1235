#include "HostProgram/Display/DisplayChoice.h"

#include <string_view>

namespace lanternfold {
namespace {

constexpr const char* noDisplay =
    "there is no display to show widgets on; start it in a desktop session, or draw them with "
    "\"lanternfold-widgets render\" or \"gallery\", or read them with \"state\"";

/// GDK_BACKEND is a list, of which "*" is any.
bool mayUse(const DisplayEnvironment& environment, std::string_view backend) {
  if (!environment.backend) return true;
  const std::string list = "," + *environment.backend + ",";
  return list.find("," + std::string(backend) + ",") != std::string::npos ||
         list.find(",*,") != std::string::npos;
}

}  // namespace

std::expected<WindowKind, CommandFailure> chooseDisplay(
    const DisplayEnvironment& environment,
    const std::function<WaylandCompositor()>& askCompositor) {
  const bool hasX11 = environment.x11 && mayUse(environment, "x11");
  const WaylandCompositor compositor = environment.wayland && mayUse(environment, "wayland")
                                           ? askCompositor()
                                           : WaylandCompositor::unreachable;
  if (compositor == WaylandCompositor::withLayers) {
    return WindowKind::waylandLayer;
  }
  if (hasX11) return WindowKind::x11;
  if (compositor == WaylandCompositor::withoutLayers) {
    return WindowKind::waylandPlain;
  }
  return std::unexpected(workFailed(noDisplay));
}

}  // namespace lanternfold
