#include "HostProgram/Cards/ForeignMove.h"

#include <cmath>
#include <utility>

namespace lanternfold {
namespace {

/// Windows stand on whole points.
bool isSame(Point one, Point other) {
  return std::abs(one.x - other.x) < 1 && std::abs(one.y - other.y) < 1;
}

bool isInside(Point point, Size size) {
  return point.x >= 0 && point.y >= 0 && point.x < size.width && point.y < size.height;
}

}  // namespace

void ForeignMove::pointerLeft(Point pointer, Size size, Point place) {
  if (!takenAt_ && isInside(pointer, size)) takenAt_ = place;
}

void ForeignMove::keyboardTaken(Point place) {
  if (!takenAt_) takenAt_ = place;
}

void ForeignMove::paused(Point place) {
  if (takenAt_) takenAt_ = place;
}

bool ForeignMove::pointerIsFree() {
  takenAt_.reset();
  return std::exchange(isPlacingOwed_, false);
}

bool ForeignMove::holdsPlacing() {
  isPlacingOwed_ = isPossible();
  return isPlacingOwed_;
}

bool ForeignMove::moves(Point place, Point asked) const {
  return takenAt_ && !isSame(place, *takenAt_) && !isSame(place, asked);
}

}  // namespace lanternfold
