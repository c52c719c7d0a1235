#include "HostProgram/Display/DisplayChoice.h"

namespace lanternfold {
namespace {

constexpr const char* noDisplay =
    "there is no display to show widgets on; start it in a desktop session, or draw them with "
    "\"lanternfold-widgets render\" or \"gallery\", or read them with \"state\"";

constexpr const char* noAnswer =
    "the Wayland compositor does not answer; end what holds it up, or sign in anew, and start the "
    "widgets again";
constexpr std::string_view notBelow =
    "this compositor has no layer below the windows, so the widgets are ordinary windows; move "
    "them with the pointer";
constexpr std::string_view throughX11 =
    "this compositor has no layer below the windows, so the widgets are shown through its X11 "
    "side: they stay below as far as it lets them, and are less sharp on a scaled monitor";
constexpr std::string_view silentBesideX11 =
    "the Wayland compositor does not answer, so the widgets are shown on the X11 display; start "
    "them again when it does";

std::string_view remarkOnX11(WaylandCompositor compositor) {
  switch (compositor) {
    case WaylandCompositor::withoutLayers:
      return throughX11;
    case WaylandCompositor::silent:
      return silentBesideX11;
    default:
      return {};
  }
}

/// GDK_BACKEND is a list, of which "*" is any.
bool mayUse(const DisplayEnvironment& environment, std::string_view backend) {
  if (!environment.backend) return true;
  const std::string list = "," + *environment.backend + ",";
  return list.find("," + std::string(backend) + ",") != std::string::npos ||
         list.find(",*,") != std::string::npos;
}

}  // namespace

std::expected<DisplayChoice, CommandFailure> chooseDisplay(
    const DisplayEnvironment& environment,
    const std::function<WaylandCompositor()>& askCompositor) {
  const bool hasX11 = environment.x11 && mayUse(environment, "x11");
  const WaylandCompositor compositor = environment.wayland && mayUse(environment, "wayland")
                                           ? askCompositor()
                                           : WaylandCompositor::unreachable;
  if (compositor == WaylandCompositor::withLayers) {
    return DisplayChoice{.kind = WindowKind::waylandLayer};
  }
  if (hasX11) return DisplayChoice{.kind = WindowKind::x11, .remark = remarkOnX11(compositor)};
  if (compositor == WaylandCompositor::withoutLayers) {
    return DisplayChoice{.kind = WindowKind::waylandPlain, .remark = notBelow};
  }
  const bool isSilent = compositor == WaylandCompositor::silent;
  return std::unexpected(workFailed(isSilent ? noAnswer : noDisplay));
}

}  // namespace lanternfold
