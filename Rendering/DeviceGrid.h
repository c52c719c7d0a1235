// Where the points of a cairo context lie among the pixels of what it draws to.
#pragma once

#include "Rendering/CairoHandles.h"
#include "ViewTree/Geometry.h"

namespace lanternfold {

/// A value of the moment: it does not follow later changes of the context.
class DeviceGrid {
 public:
  explicit DeviceGrid(cairo_t* surface);

  /// Whether there are pixels, upright ones that are as wide as high, and things are worth being
  /// moved onto them; a file of vectors has none.
  [[nodiscard]] bool hasPixels() const { return hasPixels_; }
  /// Pixels a point.
  [[nodiscard]] double scale() const { return scale_; }

  [[nodiscard]] Point toPixels(Point point) const;
  [[nodiscard]] Rect toPixels(const Rect& rect) const;
  [[nodiscard]] Rect toPoints(const Rect& pixels) const;

  /// `frame` moved by less than a pixel, and made larger or smaller by less than one, so that its
  /// edges stand between pixels; itself where there are none.
  [[nodiscard]] Rect aligned(const Rect& frame) const;

  /// The same in pixels, in whole numbers; asked for only where there are pixels.
  [[nodiscard]] Rect alignedPixels(const Rect& frame) const;

  /// Makes a pixel the unit of the context, and the first one of its target the origin.
  void usePixels(cairo_t* surface) const;

  /// What can be painted at all, in pixels, its edges between them.
  [[nodiscard]] const Rect& visiblePixels() const { return visible_; }

 private:
  bool hasPixels_ = false;
  double scale_ = 1;
  double deviceScale_ = 1;
  Point origin_;  // of the points, in pixels
  Rect visible_;
};

/// What two rectangles share; of no size when that is nothing.
[[nodiscard]] Rect intersection(const Rect& one, const Rect& other);

/// `rect` made larger until its edges stand at whole numbers.
[[nodiscard]] Rect roundedOut(const Rect& rect);

}  // namespace lanternfold
