// The functions that make views. Texts from outside are made fit to show on the way in: bytes that
// are no UTF-8, control characters and unbounded length never reach the layout.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ViewTree/View.h"

namespace lanternfold {

struct TextStyle {
  Font font;
  Truncation truncation = Truncation::tail;
  double minimumScale = 1;
  /// Above 1 the text wraps: `minimumScale` is for single lines.
  std::size_t lineLimit = 1;
  HorizontalAlignment alignment = HorizontalAlignment::leading;
  /// Another text beside which this one is to be of one size, shrunk or not.
  std::string_view sizedWith = {};
};

struct SymbolStyle {
  std::optional<double> pointSize;  ///< absent: as large as its frame allows
  std::optional<double> strength;   ///< 0 to 1, of a symbol that shows one
};

[[nodiscard]] View text(std::string_view content, const TextStyle& style);
/// `format` with the time of drawing in place of its "%@".
[[nodiscard]] View drawingTime(std::string_view format, const Font& font);
[[nodiscard]] View symbol(std::string name);
[[nodiscard]] View symbol(std::string name, double pointSize);
[[nodiscard]] View symbol(std::string name, const SymbolStyle& style);
[[nodiscard]] View image(std::string name);
[[nodiscard]] View circle(double lineWidth);
[[nodiscard]] View roundedRectangle(double cornerRadius, Colour fill);
[[nodiscard]] View linearGradient(Colour start, Colour end);
[[nodiscard]] View emptyView();

[[nodiscard]] View hstack(VerticalAlignment alignment, double spacing, std::vector<View> children);
[[nodiscard]] View vstack(HorizontalAlignment alignment, double spacing,
                          std::vector<View> children);
[[nodiscard]] View zstack(Alignment alignment, std::vector<View> children);
/// `choices` from the richest to the plainest; at least one.
[[nodiscard]] View firstThatFits(FitAxes axes, std::vector<View> choices);
/// `rows` with the widest of `spacings` there is room for, else as many of the first ones as there
/// is room for; at least one spacing, the widest first.
[[nodiscard]] View wholeRows(HorizontalAlignment alignment, std::vector<double> spacings,
                             std::vector<View> rows);
/// `cells` row by row, as many whole rows as there is room for; at least one column.
[[nodiscard]] View wholeGrid(const WholeGridNode& grid, std::vector<View> cells);
/// `content` between `leading` and `trailing`; an empty view is no accessory. Stops the program
/// when `row.besideBoth` is below `row.besideLeading`.
[[nodiscard]] View accessoryRow(const AccessoryRowNode& row, View leading, View content,
                                View trailing);
[[nodiscard]] View button(std::string intent, View face);
/// With another face while it is pressed.
[[nodiscard]] View button(std::string intent, View face, View pressedFace);
/// `content` as a link; `content` alone when `url` is none that a link may have.
[[nodiscard]] View link(std::string url, View content);

}  // namespace lanternfold
