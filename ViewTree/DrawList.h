// What a painter paints, in order, with every colour resolved: the last step before a surface.
//
// Made by: `makeDrawList` from a laid-out view. Read by: the painters, the golden tests.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "ViewTree/Colour.h"
#include "ViewTree/Geometry.h"
#include "ViewTree/Layout.h"

namespace lanternfold {

/// One line in the middle of the frame's height, from the frame's left side.
struct DrawText {
  Rect frame;
  std::string text;  ///< plain, one line, never markup
  Font font;
  Rgba colour;
  friend bool operator==(const DrawText&, const DrawText&) = default;
};

struct DrawSymbol {
  Rect frame;
  std::string name;
  Rgba colour;
  std::optional<double> strength;  ///< 0 to 1, of a symbol that shows one
  friend bool operator==(const DrawSymbol&, const DrawSymbol&) = default;
};

/// A picture in its own colours.
struct DrawImage {
  Rect frame;
  std::string name;
  double opacity = 1;
  friend bool operator==(const DrawImage&, const DrawImage&) = default;
};

/// Stroked inside the largest circle of the frame.
struct StrokeCircle {
  Rect frame;
  double lineWidth = 1;
  Rgba colour;
  friend bool operator==(const StrokeCircle&, const StrokeCircle&) = default;
};

struct FillRoundedRectangle {
  Rect frame;
  double cornerRadius = 0;
  Rgba colour;
  friend bool operator==(const FillRoundedRectangle&, const FillRoundedRectangle&) = default;
};

/// From the frame's top to its bottom.
struct FillLinearGradient {
  Rect frame;
  Rgba start;
  Rgba end;
  friend bool operator==(const FillLinearGradient&, const FillLinearGradient&) = default;
};

/// Nothing is drawn outside the rounded rectangle until the `EndClip` that belongs to it.
struct BeginClip {
  Rect frame;
  double cornerRadius = 0;
  friend bool operator==(const BeginClip&, const BeginClip&) = default;
};

/// Ends the last clip that was begun and has not ended.
struct EndClip {
  friend bool operator==(const EndClip&, const EndClip&) = default;
};

using DrawCommand = std::variant<DrawText, DrawSymbol, DrawImage, StrokeCircle,
                                 FillRoundedRectangle, FillLinearGradient, BeginClip, EndClip>;
/// Clips are nested: each that is begun ends, and none ends that was not begun.
using DrawList = std::vector<DrawCommand>;

struct DrawContext {
  const ColourPalette& palette;
  ColourScheme scheme = ColourScheme::light;  ///< where the view does not say another one
  /// Told, in a line each, of colours that the palette lacks; a mid grey stands in for them.
  std::function<void(std::string_view)> report;
  /// Whether something newer has been asked for: what may be doubtful by then is painted fainter.
  bool isContentInvalidated = false;
};

/// Nodes without an area or without opacity are left out, and clips around nothing.
[[nodiscard]] DrawList makeDrawList(const LaidOutView& view, const DrawContext& context);

}  // namespace lanternfold
