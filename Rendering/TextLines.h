// Lines of plain text, set by pango: the common ground of measuring and painting, so that what is
// painted is exactly what was measured.
//
// A line is as high as one of the system font, whatever typefaces its characters come from: rows
// stay where they are when a name has Thai letters or an emoji, which may reach a little out.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "Rendering/CairoHandles.h"
#include "ViewTree/Geometry.h"
#include "ViewTree/TextMeasurer.h"

using PangoGlyphItem = struct _PangoGlyphItem;
using PangoLayoutLine = struct _PangoLayoutLine;

namespace lanternfold {

/// Longer texts are cut; whatever the views show is far shorter.
inline constexpr std::size_t maximumLineBytes = 8192;
/// A font that is larger, or not above 0, shows nothing.
inline constexpr double largestFontSize = 20'000;

/// One line, measured from the left end of its baseline in units of its font's size: the same for
/// all sizes, since nothing of it is rounded to pixels. A font of its own for every size that a
/// shrinking text passes through would cost more than all else.
struct TextLine {
  /// Null when there is nothing to show, or no typeface at all to show it with.
  PangoLayoutHandle layout;
  double width = 0;
  Rect ink;  ///< what the glyphs cover
  bool hasColouredParts = false;
  bool hasBoxes = false;  ///< for characters that no typeface has

  /// The size of the layout's font.
  static constexpr double layoutFontSize = 64;

  /// The layout's only line; asked for only when there is a layout.
  [[nodiscard]] PangoLayoutLine* line() const;
};

/// Whether the letters of a part of a line have colours of their own, as emoji have.
[[nodiscard]] bool isColoured(const PangoGlyphItem& part);

/// The height of every line in a font, and how far its baseline stands below its top, in points.
struct LineMetrics {
  double height = 0;
  double baseline = 0;
};

/// Sets lines and keeps those set last. Used on one thread.
class TextLines {
 public:
  /// `report` is told in one line of each script that no typeface has, and when there is no
  /// typeface at all. `language` as of `RenderingResources`.
  explicit TextLines(std::function<void(std::string_view)> report,
                     const std::string& language = {});
  ~TextLines();
  TextLines(const TextLines&) = delete;
  TextLines& operator=(const TextLines&) = delete;

  /// `text` in the system font; invalid UTF-8 shows replacement characters, markup is never
  /// interpreted. A text whose first letter is of a script written from right to left runs that
  /// way; every other one, that without a letter included, from left to right. The line stands
  /// until the next call.
  [[nodiscard]] const TextLine& line(std::string_view text, FontWeight weight);

  /// How wide `text` is, in points.
  [[nodiscard]] double width(std::string_view text, const Font& font);
  /// All zero for a font that shows nothing.
  [[nodiscard]] LineMetrics metrics(const Font& font) const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace lanternfold
