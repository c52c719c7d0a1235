// Tells a card that the user moves by the window manager's own means, as with Alt and the pointer,
// from one that the window manager has put elsewhere of its own.
//
// Pure. Made by: a card's window. Coordinates are points of the whole desktop.
#pragma once

#include <optional>

#include "ViewTree/Geometry.h"

namespace lanternfold {

/// The window manager takes the pointer away for such a move, while it is over the card, or the
/// keyboard, while that is the card's; a card that is put elsewhere without that is none that the
/// user has moved.
class ForeignMove {
 public:
  /// The pointer left a card of that `size` at `pointer` of it: it was taken away if that is
  /// inside. The card stands at `place`. A card that is moved may fall behind the pointer, which
  /// leaves it then once more.
  void pointerLeft(Point pointer, Size size, Point place);
  /// The keyboard was taken away from a card that stands at `place`.
  void keyboardTaken(Point place);
  /// It stands at `place` for the moment: the pointer may be taken still, and move it on from
  /// there, as the arrow keys do.
  void paused(Point place);
  /// The pointer is nobody's any more. Whether a placing was held meanwhile, which is to be made
  /// up for.
  [[nodiscard]] bool pointerIsFree();
  /// Whether a placing has to wait until the pointer is free; it is remembered then.
  [[nodiscard]] bool holdsPlacing();

  /// The card stands at `place`, and was asked to stand at `asked`. Whether the user is moving it.
  [[nodiscard]] bool moves(Point place, Point asked) const;

  /// The pointer is, as far as is known, somebody else's.
  [[nodiscard]] bool isPossible() const { return takenAt_.has_value(); }

 private:
  std::optional<Point> takenAt_;
  bool isPlacingOwed_ = false;
};

}  // namespace lanternfold
