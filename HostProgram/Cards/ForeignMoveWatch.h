// Notices when the user moves a card by the window manager's own means.
//
// Made by: `CardWindow`. Main thread.
#pragma once

#include <functional>
#include <gtkmm/window.h>
#include <vector>

#include "HostProgram/Cards/ForeignMove.h"
#include "HostProgram/Display/WindowPlacer.h"

namespace lanternfold {

/// Where the display tells nobody where windows are, it notices nothing.
class ForeignMoveWatch {
 public:
  struct Handlers {
    /// Where the card is asked to stand; none while it is moved by itself.
    std::function<std::optional<Rect>()> asked;
    /// It stands at `place` of the whole desktop from now on. Never inside of a call.
    std::function<void(Point place)> moved;
    /// A placing that was held (see `holdsPlacing`) can be made up for.
    std::function<void()> freed;
  };

  /// Both outlive the watch.
  ForeignMoveWatch(Gtk::Window& window, const WindowPlacer& placer, Handlers handlers);
  ~ForeignMoveWatch();
  ForeignMoveWatch(const ForeignMoveWatch&) = delete;
  ForeignMoveWatch& operator=(const ForeignMoveWatch&) = delete;

  /// A move may be under way: whoever put the card back to its place would tear it out of the
  /// user's hand, and hears when that can be done.
  [[nodiscard]] bool holdsPlacing() { return move_.holdsPlacing(); }

 private:
  void pointerLeft(const GdkEventCrossing& event);
  void keyboardLeft();
  void waitForMove();
  void comeBack();
  void waitForThought();
  void waitForFreePointer();
  [[nodiscard]] bool freePointer();
  [[nodiscard]] bool isTakenStill();
  void configured();
  [[nodiscard]] bool finish();
  [[nodiscard]] bool isMoved() const;

  Gtk::Window& window_;
  const WindowPlacer& placer_;
  Handlers handlers_;
  ForeignMove move_;
  bool isKeyboardTaken_ = false;
  bool hasComeBack_ = false;  ///< the pointer, or the keyboard where that is taken, since then
  bool hasPaused_ = false;    ///< after a step of a move, since then
  std::vector<sigc::connection> connections_;
  sigc::connection settling_;
  sigc::connection freeing_;
  sigc::connection thinking_;  ///< while the user may still make another step
};

}  // namespace lanternfold
