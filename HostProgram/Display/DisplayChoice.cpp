#include "HostProgram/Display/DisplayChoice.h"

#include <ranges>

namespace lanternfold {
namespace {

constexpr const char* noDisplay =
    "there is no display to show widgets on; start it in a desktop session, or draw them with "
    "\"lanternfold-widgets render\" or \"gallery\", or read them with \"state\"";

constexpr const char* noneOfBackends =
    "none of the kinds of displays that GDK_BACKEND names can be used here; unset it, or set it to "
    "\"x11\" or \"wayland\", whichever this session has";

constexpr const char* noAnswer =
    "the Wayland compositor does not answer; end what holds it up, or sign in anew, and start the "
    "widgets again";
constexpr const char* noAnswerOfX =
    "the X server does not answer; end what holds it up, or sign in anew, and start the widgets "
    "again";
constexpr const char* noServer =
    "the display cannot be opened; check DISPLAY or WAYLAND_DISPLAY, and that its server is there";
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

/// What the environment has, looked at no further than is needed.
class Displays {
 public:
  Displays(const DisplayEnvironment& environment,
           const std::function<WaylandCompositor()>& askCompositor,
           const std::function<XServer(const std::string&)>& askXServer)
      : environment_(environment), askCompositor_(askCompositor), askXServer_(askXServer) {}

  /// The one of that name in GDK_BACKEND, where "*" is the best of all; none when it is of no use.
  [[nodiscard]] std::optional<DisplayChoice> named(std::string_view backend) {
    if (backend == "*") return best();
    if (backend == "x11") return x11();
    if (backend == "wayland") return wayland();
    return std::nullopt;
  }

  /// Why there is none, once all that the user names are of no use.
  [[nodiscard]] const char* fault() const {
    if (compositor_ == WaylandCompositor::silent) return noAnswer;
    if (xServer_ == XServer::silent) return noAnswerOfX;
    const bool isOneLeftOut =
        (environment_.x11 && !xServer_) || (environment_.wayland && !compositor_);
    if (isOneLeftOut) return noneOfBackends;
    return environment_.x11 || environment_.wayland ? noServer : noDisplay;
  }

 private:
  WaylandCompositor compositor() {
    if (!compositor_) {
      compositor_ = environment_.wayland ? askCompositor_() : WaylandCompositor::unreachable;
    }
    return *compositor_;
  }

  std::optional<DisplayChoice> best() {
    if (compositor() == WaylandCompositor::withLayers) return wayland();
    if (const auto found = x11()) return found;
    return wayland();
  }

  std::optional<DisplayChoice> x11() {
    if (!environment_.x11) return std::nullopt;
    if (!xServer_) xServer_ = askXServer_(*environment_.x11);
    if (*xServer_ != XServer::usable) return std::nullopt;
    return DisplayChoice{
        .kind = WindowKind::x11,
        .remark = remarkOnX11(compositor_.value_or(WaylandCompositor::unreachable))};
  }

  std::optional<DisplayChoice> wayland() {
    switch (compositor()) {
      case WaylandCompositor::withLayers:
        return DisplayChoice{.kind = WindowKind::waylandLayer};
      case WaylandCompositor::withoutLayers:
        return DisplayChoice{.kind = WindowKind::waylandPlain, .remark = notBelow};
      default:
        return std::nullopt;
    }
  }

  const DisplayEnvironment& environment_;
  const std::function<WaylandCompositor()>& askCompositor_;
  const std::function<XServer(const std::string&)>& askXServer_;
  std::optional<WaylandCompositor> compositor_;  ///< none before it has been asked
  std::optional<XServer> xServer_;               ///< the same
};

}  // namespace

std::expected<DisplayChoice, CommandFailure> chooseDisplay(
    const DisplayEnvironment& environment, const std::function<WaylandCompositor()>& askCompositor,
    const std::function<XServer(const std::string& display)>& askXServer) {
  Displays displays(environment, askCompositor, askXServer);
  const std::string backends = environment.backend.value_or("*");
  for (const auto backend : std::views::split(std::string_view(backends), ',')) {
    if (const auto choice = displays.named(std::string_view(backend))) return *choice;
  }
  return std::unexpected(workFailed(displays.fault()));
}

}  // namespace lanternfold
