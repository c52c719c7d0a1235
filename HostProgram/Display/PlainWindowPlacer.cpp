#include "HostProgram/Display/PlainWindowPlacer.h"

#include <cmath>

namespace lanternfold {

std::vector<PlacedMonitor> PlainWindowPlacer::roomOn(std::vector<PlacedMonitor> monitors,
                                                     const std::function<void()>&) {
  return monitors;
}

void PlainWindowPlacer::prepare(Gtk::Window& window) {
  window.set_decorated(false);
  window.set_focus_on_map(false);
  window.set_resizable(false);
}

void PlainWindowPlacer::place(Gtk::Window& window, const PlacedMonitor&, Point, Size) {
  window.show();
}

Point PlainWindowPlacer::pointerOnDesktop(const GdkEvent&, Point inWindow,
                                          const Rect& frame) const {
  return {frame.origin.x + inWindow.x, frame.origin.y + inWindow.y};
}

std::unique_ptr<WindowPlacer::Move> PlainWindowPlacer::beginMove(Gtk::Window& window, Size, Paint,
                                                                 const GdkEvent& event) {
  Point pointer;
  gdk_event_get_root_coords(&event, &pointer.x, &pointer.y);
  window.begin_move_drag(GDK_BUTTON_PRIMARY, static_cast<int>(std::lround(pointer.x)),
                         static_cast<int>(std::lround(pointer.y)), gdk_event_get_time(&event));
  return nullptr;
}

void PlainWindowPlacer::raise(Gtk::Window& window) { window.present(); }

void PlainWindowPlacer::lower(Gtk::Window&) {}

}  // namespace lanternfold
