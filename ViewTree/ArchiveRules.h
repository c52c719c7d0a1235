// What numbers and words of an archive may be.
//
// Read by: the members of each kind of node (ViewTree/ArchivedNodes.h), the encoder, the decoder.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "ViewTree/ViewArchive.h"

namespace lanternfold {

enum class ArchivedChildren { none, one, two, three, atLeastOne, any };

/// How many children there must be; none for a kind that leaves it open.
[[nodiscard]] constexpr std::optional<std::size_t> exactCount(ArchivedChildren children) {
  if (children == ArchivedChildren::atLeastOne || children == ArchivedChildren::any) {
    return std::nullopt;
  }
  return static_cast<std::size_t>(children);
}

/// What a number may be, and what it is when it is not there.
struct NumberRule {
  double least = 0;
  double most = 0;
  std::optional<double> standard = std::nullopt;  ///< none: the number must be there
  bool mayBeUnlimited = false;

  [[nodiscard]] constexpr NumberRule unless(double value) const {
    return {least, most, value, mayBeUnlimited};
  }
};

/// What a whole number may be from 1, and what it is when it is not there.
struct CountRule {
  std::size_t most = 0;
  std::size_t standard = 1;
};

/// In either direction, as spacings and offsets go.
inline constexpr NumberRule lengthRule{-largestArchivedLength, largestArchivedLength};
inline constexpr NumberRule extentRule{0, largestArchivedLength};
inline constexpr NumberRule unboundedExtentRule{0, largestArchivedLength, std::nullopt, true};
inline constexpr NumberRule fractionRule{0, 1};
inline constexpr CountRule lineLimitRule{mostArchivedLines};
inline constexpr CountRule columnsRule{mostGridColumns};

// The names of the cases, in their order.
inline constexpr std::array<std::string_view, 2> truncationNames = {"middle", "tail"};
inline constexpr std::array<std::string_view, 2> fontWeightNames = {"regular", "bold"};
inline constexpr std::array<std::string_view, 2> colourSchemeNames = {"light", "dark"};
inline constexpr std::array<std::string_view, 2> fontLeadingNames = {"standard", "tight"};
inline constexpr std::array<std::string_view, 3> fitAxesNames = {"horizontal", "vertical", "both"};
inline constexpr std::array<std::string_view, 3> horizontalNames = {"leading", "centre",
                                                                    "trailing"};
inline constexpr std::array<std::string_view, 4> verticalNames = {"top", "centre", "bottom",
                                                                  "firstTextBaseline"};
/// Row by row from the top, each from its leading end.
inline constexpr std::array<std::string_view, 12> alignmentNames = {"topLeading",
                                                                    "topCentre",
                                                                    "topTrailing",
                                                                    "centreLeading",
                                                                    "centre",
                                                                    "centreTrailing",
                                                                    "bottomLeading",
                                                                    "bottomCentre",
                                                                    "bottomTrailing",
                                                                    "firstTextBaselineLeading",
                                                                    "firstTextBaselineCentre",
                                                                    "firstTextBaselineTrailing"};
inline constexpr std::size_t indexOfCentre = 4;

}  // namespace lanternfold
