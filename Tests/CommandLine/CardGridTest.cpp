// Where cards stand on a grid of cells.
#include <gtest/gtest.h>

#include "CommandLine/Gallery/CardGrid.h"

namespace lanternfold {

// Beside the records, so that a failure shows places and not bytes.
static void PrintTo(const CardPlace& place, std::ostream* stream) {
  *stream << place.column << "," << place.row;
}

namespace {

constexpr CardSpan small{.columns = 1, .rows = 1};
constexpr CardSpan medium{.columns = 2, .rows = 1};
constexpr CardSpan large{.columns = 2, .rows = 2};

using Places = std::vector<CardPlace>;

TEST(CardGrid, WithoutCardsHasNoRows) {
  const CardGrid grid = placeCards({}, 4);
  EXPECT_EQ(grid.places, Places{});
  EXPECT_EQ(grid.rows, 0U);
}

TEST(CardGrid, FillsRowsInTheOrderOfTheCards) {
  const CardGrid grid = placeCards(std::vector{small, medium, small, small}, 4);
  EXPECT_EQ(grid.places, (Places{{0, 0}, {1, 0}, {3, 0}, {0, 1}}));
  EXPECT_EQ(grid.rows, 2U);
}

TEST(CardGrid, ACardThatDoesNotFitInARowLeavesItsCellToALaterOne) {
  const CardGrid grid = placeCards(std::vector{small, medium, medium, small}, 4);
  EXPECT_EQ(grid.places, (Places{{0, 0}, {1, 0}, {0, 1}, {3, 0}}));
}

TEST(CardGrid, ALargeCardKeepsItsCellsInBothRows) {
  const CardGrid grid = placeCards(std::vector{large, medium, medium, small}, 4);
  EXPECT_EQ(grid.places, (Places{{0, 0}, {2, 0}, {2, 1}, {0, 2}}));
  EXPECT_EQ(grid.rows, 3U);
}

TEST(CardGrid, ALargeCardMovesOnPastOneBelowItsFirstCell) {
  EXPECT_EQ(placeCards(std::vector{medium, small, large, medium, small, large}, 3).places,
            (Places{{0, 0}, {2, 0}, {0, 1}, {0, 3}, {2, 1}, {0, 4}}));
}

TEST(CardGrid, AsWideAsOneCellStacksSmallCards) {
  EXPECT_EQ(placeCards(std::vector{small, small}, 1).places, (Places{{0, 0}, {0, 1}}));
}

TEST(CardGridDeathTest, ACardThatIsWiderThanTheGridIsAProgrammersError) {
  EXPECT_DEATH((void)placeCards(std::vector{medium}, 1), "a card of a grid takes");
  EXPECT_DEATH((void)placeCards(std::vector{CardSpan{.columns = 0}}, 1), "a card of a grid takes");
  EXPECT_DEATH((void)placeCards(std::vector{CardSpan{.rows = 0}}, 1), "a card of a grid takes");
}

}  // namespace
}  // namespace lanternfold
