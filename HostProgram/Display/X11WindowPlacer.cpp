#include "HostProgram/Display/X11WindowPlacer.h"

#include <cmath>

namespace lanternfold {
namespace {

void moveTo(Gtk::Window& window, const PlacedMonitor& monitor, Point origin) {
  window.move(static_cast<int>(std::lround(monitor.origin.x + origin.x)),
              static_cast<int>(std::lround(monitor.origin.y + origin.y)));
}

/// The window itself follows the pointer: the coordinates of the whole desktop do not change under
/// it.
class WindowMove final : public WindowPlacer::Move {
 public:
  explicit WindowMove(Gtk::Window& window) : window_(window) {}
  void to(const PlacedMonitor& monitor, Point origin) override { moveTo(window_, monitor, origin); }

 private:
  Gtk::Window& window_;
};

}  // namespace

std::vector<PlacedMonitor> X11WindowPlacer::roomOn(std::vector<PlacedMonitor> monitors,
                                                   const std::function<void()>&) {
  return monitors;
}

void X11WindowPlacer::prepare(Gtk::Window& window) {
  window.set_decorated(false);
  window.set_skip_taskbar_hint(true);
  window.set_skip_pager_hint(true);
  window.set_keep_below(true);
  window.stick();
  window.set_focus_on_map(false);
  // Window managers that lay windows out in tiles leave those alone that have one size only.
  window.set_resizable(false);
  // Not a place of the window manager's choice: widgets stand where the user has put them.
  Gdk::Geometry geometry{};
  window.set_geometry_hints(window, geometry, Gdk::HINT_USER_POS);
}

void X11WindowPlacer::place(Gtk::Window& window, const PlacedMonitor& monitor, Point origin, Size) {
  moveTo(window, monitor, origin);
  if (window.get_visible()) return;
  window.show();
  // Some window managers take the place of a new window from themselves; a move they obey.
  moveTo(window, monitor, origin);
}

Point X11WindowPlacer::pointerOnDesktop(const GdkEvent& event, Point, const Rect&) const {
  Point pointer;
  gdk_event_get_root_coords(&event, &pointer.x, &pointer.y);
  return pointer;
}

std::unique_ptr<WindowPlacer::Move> X11WindowPlacer::beginMove(Gtk::Window& window, Size, Paint,
                                                               const GdkEvent&) {
  return std::make_unique<WindowMove>(window);
}

void X11WindowPlacer::raise(Gtk::Window& window) {
  window.set_keep_below(false);
  window.set_keep_above(true);
}

void X11WindowPlacer::raiseWithFocus(Gtk::Window& window) {
  raise(window);
  window.present();
}

void X11WindowPlacer::lower(Gtk::Window& window) {
  window.set_keep_above(false);
  window.set_keep_below(true);
}

std::optional<Point> X11WindowPlacer::placeOf(Gtk::Window& window) const {
  const auto surface = window.get_window();
  if (!surface) return std::nullopt;
  int x = 0;
  int y = 0;
  surface->get_origin(x, y);
  return Point{static_cast<double>(x), static_cast<double>(y)};
}

}  // namespace lanternfold
