// Tells a card that the user moves by the window manager's own means, as with Alt and the pointer,
// from one that the window manager has put elsewhere of its own.
//
// Pure. Made by: a card's window. Coordinates are points of the whole desktop.
#pragma once

#include <optional>

#include "ViewTree/Geometry.h"

namespace lanternfold {

/// The window manager takes the pointer away for such a move, while it is over the card; a card
/// that is put elsewhere without that is none that the user has moved.
class ForeignMove {
 public:
  /// The pointer left a card of that `size` at `pointer` of it: it was taken away if that is
  /// inside. The card stands at `place`. A card that is moved may fall behind the pointer, which
  /// leaves it then once more.
  void pointerLeft(Point pointer, Size size, Point place);
  /// No button has been down for a while: the pointer is nobody's any more.
  void pointerIsFree();

  /// The card stands at `place`, and was asked to stand at `asked`. Whether the user is moving it.
  [[nodiscard]] bool moves(Point place, Point asked) const;

  /// The pointer is, as far as is known, somebody else's.
  [[nodiscard]] bool isPossible() const { return takenAt_.has_value(); }

 private:
  std::optional<Point> takenAt_;
};

}  // namespace lanternfold
