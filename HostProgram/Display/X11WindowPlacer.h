// Widgets as windows that an X11 window manager keeps below the others, on every workspace.
#pragma once

#include "HostProgram/Display/WindowPlacer.h"

namespace lanternfold {

class X11WindowPlacer final : public WindowPlacer {
 public:
  [[nodiscard]] std::vector<PlacedMonitor> roomOn(std::vector<PlacedMonitor> monitors,
                                                  const std::function<void()>& changed) override;
  void prepare(Gtk::Window& window) override;
  void place(Gtk::Window& window, const PlacedMonitor& monitor, Point origin, Size size) override;
  [[nodiscard]] Point pointerOnDesktop(const GdkEvent& event, Point inWindow,
                                       const Rect& frame) const override;
  [[nodiscard]] std::unique_ptr<Move> beginMove(Gtk::Window& window, Size size, Paint paint,
                                                const GdkEvent& event) override;
  void raise(Gtk::Window& window) override;
  void raiseWithFocus(Gtk::Window& window) override;
  void lower(Gtk::Window& window) override;
  [[nodiscard]] bool choosesPlaces() const override { return true; }
  [[nodiscard]] std::optional<Point> placeOf(Gtk::Window& window) const override;
  [[nodiscard]] bool isClosedByUser() const override { return true; }
};

}  // namespace lanternfold
