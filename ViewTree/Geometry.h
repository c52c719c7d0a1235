// Points, sizes and rectangles of the view tree, in points; y grows downwards.
//
// Made by: the layout. Read by: the draw list, the painters, the tests.
#pragma once

#include <limits>
#include <optional>

namespace lanternfold {

/// A length without a bound: a frame that takes all there is, a proposal of "as much as you like".
inline constexpr double unlimited = std::numeric_limits<double>::infinity();

struct Point {
  double x = 0;
  double y = 0;

  friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
  double width = 0;
  double height = 0;

  friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
  Point origin;
  Size size;

  [[nodiscard]] constexpr double left() const { return origin.x; }
  [[nodiscard]] constexpr double top() const { return origin.y; }
  [[nodiscard]] constexpr double right() const { return origin.x + size.width; }
  [[nodiscard]] constexpr double bottom() const { return origin.y + size.height; }

  friend bool operator==(const Rect&, const Rect&) = default;
};

struct EdgeInsets {
  double top = 0;
  double leading = 0;
  double bottom = 0;
  double trailing = 0;

  friend bool operator==(const EdgeInsets&, const EdgeInsets&) = default;
};

/// What a parent offers a child. An absent length asks for the child's ideal one.
struct ProposedSize {
  std::optional<double> width;
  std::optional<double> height;

  friend bool operator==(const ProposedSize&, const ProposedSize&) = default;
};

enum class HorizontalAlignment { leading, centre, trailing };
/// The baseline is that of the topmost text, the bottom of a view that shows none.
enum class VerticalAlignment { top, centre, bottom, firstTextBaseline };

/// Where a line of the user's language begins; leading is that side.
enum class LayoutDirection { leftToRight, rightToLeft };

struct Alignment {
  HorizontalAlignment horizontal = HorizontalAlignment::centre;
  VerticalAlignment vertical = VerticalAlignment::centre;

  friend bool operator==(const Alignment&, const Alignment&) = default;
};

inline constexpr Alignment centred{};
inline constexpr Alignment topCentre{HorizontalAlignment::centre, VerticalAlignment::top};
inline constexpr Alignment topLeading{HorizontalAlignment::leading, VerticalAlignment::top};
inline constexpr Alignment topTrailing{HorizontalAlignment::trailing, VerticalAlignment::top};
inline constexpr Alignment bottomLeading{HorizontalAlignment::leading, VerticalAlignment::bottom};

}  // namespace lanternfold
