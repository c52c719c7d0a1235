// Which moves of the window manager are the user's.
#include <gtest/gtest.h>

#include "HostProgram/Cards/ForeignMove.h"

namespace lanternfold {
namespace {

constexpr Size size{170, 170};
constexpr Point here{100, 100};
constexpr Point there{300, 200};

TEST(ForeignMoveTest, ACardWhosePointerIsTakenIsMovedByTheUser) {
  ForeignMove move;
  move.pointerLeft({50, 60}, size, here);
  EXPECT_TRUE(move.isPossible());
  EXPECT_FALSE(move.moves(here, here));
  EXPECT_TRUE(move.moves(there, here));
}

TEST(ForeignMoveTest, ACardWhoseKeyboardIsTakenIsMovedByTheUserWhereverThePointerIs) {
  ForeignMove move;
  move.keyboardTaken(here);
  EXPECT_TRUE(move.isPossible());
  EXPECT_FALSE(move.moves(here, here));
  move.keyboardTaken(there);
  EXPECT_TRUE(move.moves(there, here));
  EXPECT_FALSE(move.pointerIsFree());
  EXPECT_FALSE(move.moves(there, here));
}

TEST(ForeignMoveTest, ACardThatIsPutElsewhereWithoutThePointerIsNot) {
  EXPECT_FALSE(ForeignMove().moves(there, here));
}

TEST(ForeignMoveTest, APointerThatHasLeftTheCardMovesNothing) {
  for (const Point outside : {Point{-1, 60}, Point{170, 60}, Point{50, -1}, Point{50, 170}}) {
    ForeignMove move;
    move.pointerLeft(outside, size, here);
    EXPECT_FALSE(move.isPossible());
    EXPECT_FALSE(move.moves(there, here));
  }
}

TEST(ForeignMoveTest, ACardThatFallsBehindThePointerIsMovedStill) {
  ForeignMove move;
  move.pointerLeft({50, 60}, size, here);
  move.pointerLeft({50, 187}, size, here);
  EXPECT_TRUE(move.moves(there, here));
  move.pointerLeft({50, 60}, size, there);
  EXPECT_TRUE(move.moves(there, here));
}

TEST(ForeignMoveTest, AFreePointerMovesNothing) {
  ForeignMove move;
  move.pointerLeft({50, 60}, size, here);
  EXPECT_FALSE(move.pointerIsFree());
  EXPECT_FALSE(move.isPossible());
  EXPECT_FALSE(move.moves(there, here));
}

// As one of the arrow keys does, however long the user thinks.
TEST(ForeignMoveTest, AMoveWithPausesGoesOn) {
  ForeignMove move;
  move.pointerLeft({50, 60}, size, here);
  move.paused(there);
  EXPECT_TRUE(move.isPossible());
  EXPECT_FALSE(move.moves(there, there));
  EXPECT_TRUE(move.moves({340, 200}, there));
}

TEST(ForeignMoveTest, APauseTakesNoPointer) {
  ForeignMove move;
  move.paused(there);
  EXPECT_FALSE(move.isPossible());
}

TEST(ForeignMoveTest, APlacingThatWasHeldIsMadeUpForOnce) {
  ForeignMove move;
  EXPECT_FALSE(move.holdsPlacing());
  EXPECT_FALSE(move.pointerIsFree());
  move.pointerLeft({50, 60}, size, here);
  EXPECT_TRUE(move.holdsPlacing());
  EXPECT_TRUE(move.pointerIsFree());
  EXPECT_FALSE(move.pointerIsFree());
}

// Else a widget would drift by as much as a window manager is off at each placing.
TEST(ForeignMoveTest, AWindowManagersAnswerToAPlacingIsNone) {
  ForeignMove move;
  constexpr Point answered{100, 124};
  move.pointerLeft({50, 60}, size, answered);
  EXPECT_FALSE(move.moves(answered, here));
  EXPECT_FALSE(move.moves(here, here));
}

}  // namespace
}  // namespace lanternfold
