// From a view to a picture: lays it out, paints it and gives the bytes of a PNG, SVG or PDF file.
//
// Used by: the command line's `render`. Used on one thread.
#pragma once

#include <expected>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "ViewTree/Colour.h"
#include "ViewTree/Geometry.h"
#include "ViewTree/View.h"

namespace lanternfold {

enum class PictureFormat { png, svg, pdf };

/// Larger pictures are refused: their sides may have this many pixels and no more in all.
inline constexpr double maximumPictureSidePixels = 16384;
inline constexpr double maximumPicturePixels = 64e6;

struct PictureRequest {
  Size sizePoints;
  double cornerRadiusPoints = 0;
  ColourScheme scheme = ColourScheme::light;
  double scale = 2;  ///< pixels a point, above 0
  PictureFormat format = PictureFormat::png;
  /// The time of drawing, formatted for the user.
  std::string drawingTime;
};

struct RenderingResources {
  /// Where the SVG files of the symbols and the logo are.
  std::filesystem::path assetFolder;
  /// Told, a line each, what had to be drawn by a stand-in.
  std::function<void(std::string_view)> report;
};

/// The picture's file as bytes; outside the rounded corners it is transparent. The error is a
/// sentence for the user.
[[nodiscard]] std::expected<std::string, std::string> renderPicture(
    const View& view, const PictureRequest& request, const RenderingResources& resources);

}  // namespace lanternfold
