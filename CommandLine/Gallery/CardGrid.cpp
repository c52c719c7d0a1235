#include "CommandLine/Gallery/CardGrid.h"

#include <algorithm>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

/// Which cells are taken; grows downwards as it is asked.
class Cells {
 public:
  explicit Cells(std::size_t columns) : columns_(columns) {}

  [[nodiscard]] bool areFree(const CardPlace& place, const CardSpan& card) const {
    for (std::size_t row = place.row; row < std::min(place.row + card.rows, rows_.size()); ++row) {
      for (std::size_t column = place.column; column < place.column + card.columns; ++column) {
        if (rows_[row][column]) return false;
      }
    }
    return true;
  }

  void take(const CardPlace& place, const CardSpan& card) {
    const std::size_t end = place.row + card.rows;
    if (rows_.size() < end) rows_.resize(end, std::vector<bool>(columns_));
    for (std::size_t row = place.row; row < end; ++row) {
      for (std::size_t column = place.column; column < place.column + card.columns; ++column) {
        rows_[row][column] = true;
      }
    }
  }

  /// Below the last row that is taken everything is free, so that the search ends there.
  [[nodiscard]] CardPlace firstFree(const CardSpan& card) const {
    for (CardPlace place;; ++place.row) {
      for (place.column = 0; place.column + card.columns <= columns_; ++place.column) {
        if (areFree(place, card)) return place;
      }
    }
  }

  [[nodiscard]] std::size_t rowCount() const { return rows_.size(); }

 private:
  std::size_t columns_;
  std::vector<std::vector<bool>> rows_;
};

}  // namespace

CardGrid placeCards(std::span<const CardSpan> cards, std::size_t columns) {
  Cells cells(columns);
  CardGrid grid;
  for (const CardSpan& card : cards) {
    if (card.columns == 0 || card.rows == 0 || card.columns > columns) {
      fatalError(
          "a card of a grid takes at least a cell each way, and no more columns than "
          "there are");
    }
    const CardPlace place = cells.firstFree(card);
    cells.take(place, card);
    grid.places.push_back(place);
  }
  grid.rows = cells.rowCount();
  return grid;
}

}  // namespace lanternfold
