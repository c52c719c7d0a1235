// Where cards of several sizes stand on a grid of equal cells.
//
// Made by: the gallery's sheet. Pure.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace lanternfold {

/// How many cells a card takes, at least one each way.
struct CardSpan {
  std::size_t columns = 1;
  std::size_t rows = 1;
  friend bool operator==(const CardSpan&, const CardSpan&) = default;
};

/// The cell of a card's top leading corner, from 0.
struct CardPlace {
  std::size_t column = 0;
  std::size_t row = 0;
  friend bool operator==(const CardPlace&, const CardPlace&) = default;
};

struct CardGrid {
  std::vector<CardPlace> places;  ///< in the order of the spans
  std::size_t rows = 0;           ///< that are taken
  friend bool operator==(const CardGrid&, const CardGrid&) = default;
};

/// Each card in its turn takes the first place, row by row, where all its cells are free; no card
/// is wider than `columns`.
[[nodiscard]] CardGrid placeCards(std::span<const CardSpan> cards, std::size_t columns);

}  // namespace lanternfold
