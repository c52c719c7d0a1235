// The surface of a picture that becomes a file: PNG, SVG or PDF.
#pragma once

#include <expected>
#include <memory>
#include <string>

#include "Rendering/CairoHandles.h"
#include "ViewTree/Geometry.h"

namespace lanternfold {

enum class PictureFormat { png, svg, pdf };

/// Larger pictures are refused: their sides may have this many pixels and no more in all.
inline constexpr double maximumPictureSidePixels = 16384;
inline constexpr double maximumPicturePixels = 64e6;

/// How many pixels a picture of `points` has at so many `scale` pixels a point; an error, a
/// sentence for the user, when that is none or too many.
[[nodiscard]] std::expected<Size, std::string> pictureSize(Size points, double scale);

/// One picture. An SVG holds the shapes of its letters, so that it looks the same everywhere; a PDF
/// their text, too. The same drawing is the same bytes.
class PictureFile {
 public:
  /// `title` is what a PDF says it is called; none when it is empty.
  PictureFile(PictureFormat format, Size pixels, const std::string& title);

  [[nodiscard]] cairo_surface_t* surface() const { return surface_.get(); }

  /// The file's bytes, once; afterwards nothing can be drawn. The error is a sentence for the user.
  [[nodiscard]] std::expected<std::string, std::string> finish();

 private:
  PictureFormat format_;
  // The surface writes into it until it is finished, so it may not move.
  std::unique_ptr<std::string> bytes_ = std::make_unique<std::string>();
  CairoSurface surface_;
};

}  // namespace lanternfold
