// On which display, and with what kind of windows, the widgets are shown.
//
// Pure. Made by: `runHostProgram`, before the toolkit is initialised.
#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Clock.h"
#include "Wiring/Console.h"

namespace lanternfold {

/// What the session's environment says of its displays; none for a variable that is not set or
/// empty.
struct DisplayEnvironment {
  std::optional<std::string> x11;      ///< DISPLAY
  std::optional<std::string> wayland;  ///< WAYLAND_DISPLAY
  std::optional<std::string>
      backend;  ///< GDK_BACKEND: the user's own choices, with commas, "*" for any
};

/// What is found out of a Wayland compositor.
enum class WaylandCompositor {
  unreachable,
  silent,         ///< takes a connection, and says nothing on it
  withLayers,     ///< windows can stay below the others, at a place of the program's own choice
  withoutLayers,  ///< windows are where the user puts them
};

/// What is found out of an X server.
enum class XServer {
  unreachable,
  silent,  ///< takes a connection, and says nothing on it
  usable,
};

enum class WindowKind {
  x11,           ///< kept below by the window manager
  waylandLayer,  ///< on the layer above the wallpaper
  waylandPlain,  ///< without a border, else like any other window: they do not stay below
};

struct DisplayChoice {
  WindowKind kind = WindowKind::x11;
  /// What the user is to know of it: a sentence without its full stop, or empty.
  std::string_view remark = {};
};

/// The first that can be used of those that the user names, in the user's order. Without such a
/// wish where widgets can stay below is better than where they cannot; Wayland is better than X11
/// where both can. Each of the two is asked once at the most, and only when its answer counts;
/// `askXServer` is told DISPLAY. The failure is a sentence that says what to do.
[[nodiscard]] std::expected<DisplayChoice, CommandFailure> chooseDisplay(
    const DisplayEnvironment& environment, const std::function<WaylandCompositor()>& askCompositor,
    const std::function<XServer(const std::string& display)>& askXServer);

/// Asks the compositor of the environment itself, which blocks until it answers, or for three
/// seconds.
[[nodiscard]] WaylandCompositor askWaylandCompositor(const Clock& clock);

}  // namespace lanternfold
