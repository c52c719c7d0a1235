// How different two pictures look: the measure by which golden pictures are compared.
//
// Two known measures, because each is blind to what the other sees. Structure: the structural
// similarity index (SSIM) of the lightness, which falls where a text moves by a pixel or a row is
// missing, and hardly notices how the edges of letters are smoothed. Colour: the CIE76 difference
// of colours averaged over small windows, where smoothing averages out; 2.3 is what a person just
// notices.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Tests/Rendering/Picture.h"

namespace lanternfold {

/// The side of the windows that are judged, in pixels; they overlap by half.
inline constexpr std::size_t judgedWindow = 32;

/// What windows of blessed pictures and new ones may differ by. Measured over texts of the widgets'
/// sizes on their gradients: letters painted as outlines instead of glyphs differ by 0.9 and are
/// similar by 0.78, letters an eighth of a pixel aside by 0.7 and 0.45 in one window, 0.58 in the
/// others; a pixel aside they are similar by 0.51 at most, in four windows at least, and a colour
/// that is off by 5 % differs by 5 (by 1.4 where that is 5 % of a dark one).
struct PictureTolerance {
  double colourDifference = 1.2;  ///< CIE76, at most
  double similarity = 0.55;       ///< mean SSIM where there is structure, 1 for the same, at least
};

/// One window that was judged.
struct WindowDifference {
  std::size_t x = 0;  ///< its left and its upper edge, in pixels
  std::size_t y = 0;
  double colourDifference = 0;
  double similarity = 1;

  [[nodiscard]] bool exceeds(const PictureTolerance& tolerance) const {
    return colourDifference > tolerance.colourDifference || similarity < tolerance.similarity;
  }
};

/// Every window of two pictures of the same size, composited on a mid grey so that transparency
/// counts.
[[nodiscard]] std::vector<WindowDifference> windowDifferences(const Picture& one,
                                                              const Picture& other);

/// A sentence on how they differ, worst place first; none when they look the same. Pictures of
/// different sizes always differ.
[[nodiscard]] std::optional<std::string> describedDifference(
    const Picture& blessed, const Picture& actual, const PictureTolerance& tolerance = {});

/// `actual` faded, with the windows that exceed the tolerance in red. Pictures of different sizes
/// are shown from their common corner, what only one of them has in red.
[[nodiscard]] Picture differencePicture(const Picture& blessed, const Picture& actual,
                                        const PictureTolerance& tolerance = {});

}  // namespace lanternfold
