// Widgets on the layer of a Wayland compositor that lies between the wallpaper and the windows.
#pragma once

#include "HostProgram/Display/WindowPlacer.h"

namespace lanternfold {

class LayerWindowPlacer final : public WindowPlacer {
 public:
  void prepare(Gtk::Window& window) override;
  void place(Gtk::Window& window, const PlacedMonitor& monitor, Point origin, Size size) override;
  [[nodiscard]] Point pointerOnDesktop(const GdkEvent& event, Point inWindow,
                                       const Rect& frame) const override;
  [[nodiscard]] std::unique_ptr<Move> beginMove(Gtk::Window& window, Size size, Paint paint,
                                                const GdkEvent& event) override;
  void raise(Gtk::Window& window) override;
  void lower(Gtk::Window& window) override;
};

}  // namespace lanternfold
