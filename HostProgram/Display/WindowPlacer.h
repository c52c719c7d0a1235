// How a card's window is kept where widgets belong, which each kind of display does its own way.
//
// Made by: `makeWindowPlacer`, once. Main thread.
#pragma once

#include <functional>
#include <gdk/gdk.h>
#include <gtkmm/window.h>
#include <memory>
#include <optional>
#include <vector>

#include <cairomm/context.h>

#include "HostProgram/Cards/CardDrag.h"
#include "HostProgram/Display/DisplayChoice.h"

namespace lanternfold {

/// Everything about windows without a border that stay below the others. Points are of the
/// monitor's left top corner where nothing else is said.
class WindowPlacer {
 public:
  /// A card that follows the pointer, from the first move until this is destroyed.
  class Move {
   public:
    virtual ~Move() = default;
    virtual void to(const PlacedMonitor& monitor, Point origin) = 0;
  };
  using Paint = std::function<void(const Cairo::RefPtr<Cairo::Context>&)>;

  virtual ~WindowPlacer() = default;

  /// The monitors as far as they are free for widgets, which the display may know better than the
  /// toolkit. `changed` is called when that changes by itself, never inside of a call.
  [[nodiscard]] virtual std::vector<PlacedMonitor> roomOn(std::vector<PlacedMonitor> monitors,
                                                          const std::function<void()>& changed) = 0;

  /// Once, before the window is shown for the first time.
  virtual void prepare(Gtk::Window& window) = 0;

  /// Shows it there.
  virtual void place(Gtk::Window& window, const PlacedMonitor& monitor, Point origin,
                     Size size) = 0;

  /// Where the pointer is on the whole desktop; `event` is one of the pointer, at `inWindow` of a
  /// window that stands at `frame` of the whole desktop.
  [[nodiscard]] virtual Point pointerOnDesktop(const GdkEvent& event, Point inWindow,
                                               const Rect& frame) const = 0;

  /// The pointer begins to move the window, which `paint` draws. Null where the display does it all
  /// by itself, and tells nobody where the window is.
  [[nodiscard]] virtual std::unique_ptr<Move> beginMove(Gtk::Window& window, Size size, Paint paint,
                                                        const GdkEvent& event) = 0;

  /// Above all others; the same with the keyboard's focus; and back below them.
  virtual void raise(Gtk::Window& window) = 0;
  virtual void raiseWithFocus(Gtk::Window& window) = 0;
  virtual void lower(Gtk::Window& window) = 0;

  /// Whether `place` chooses where a window stands; else the display does, and the origin is only
  /// remembered.
  [[nodiscard]] virtual bool choosesPlaces() const = 0;

  /// Where the window stands on the whole desktop; none where nobody is told.
  [[nodiscard]] virtual std::optional<Point> placeOf(Gtk::Window& window) const = 0;

  /// Whether a window is closed by the user; else it is by the display, whose surfaces go with
  /// their monitor.
  [[nodiscard]] virtual bool isClosedByUser() const = 0;
};

[[nodiscard]] std::unique_ptr<WindowPlacer> makeWindowPlacer(WindowKind kind);

}  // namespace lanternfold
