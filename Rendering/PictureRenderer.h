// From a view to a picture: lays it out, paints it and gives the bytes of a PNG, SVG or PDF file.
//
// Used by: the command line's `render` and `gallery`; a host paints on surfaces of its own with the
// same measurer, colours and painter.
#pragma once

#include <expected>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "Rendering/Painter.h"
#include "Rendering/PangoTextMeasurer.h"
#include "Rendering/PictureFile.h"
#include "ViewTree/Colour.h"
#include "ViewTree/Geometry.h"
#include "ViewTree/View.h"

namespace lanternfold {

struct PictureRequest {
  Size sizePoints;
  double cornerRadiusPoints = 0;
  ColourScheme scheme = ColourScheme::light;
  /// From right to left the whole picture is that of a mirror, texts and symbols apart.
  LayoutDirection direction = LayoutDirection::leftToRight;
  double scale = 2;  ///< pixels a point, above 0
  PictureFormat format = PictureFormat::png;
  /// The time of drawing, formatted for the user.
  std::string drawingTime;
  /// What a PDF says it is called; may be empty.
  std::string title;
};

struct RenderingResources {
  /// Where the colours and the SVG files of the symbols and the logo are.
  std::filesystem::path assetFolder;
  /// Told, a line each, what had to be drawn by a stand-in.
  std::function<void(std::string_view)> report;
  /// In which the user reads, as "ja" or "zh-CN": of the characters that languages share and write
  /// differently it takes that language's. The environment's when it is empty.
  std::string language = {};
};

/// Draws any number of pictures; typefaces, colours and symbols are looked for once. Used on one
/// thread.
class PictureRenderer {
 public:
  explicit PictureRenderer(RenderingResources resources);

  /// The picture's file as bytes; outside the rounded corners it is transparent. The error is a
  /// sentence for the user.
  [[nodiscard]] std::expected<std::string, std::string> picture(const View& view,
                                                                const PictureRequest& request);

  [[nodiscard]] const TextMeasurer& measurer() const { return measurer_; }
  [[nodiscard]] const ColourPalette& colours() const { return colours_; }
  [[nodiscard]] Painter& painter() { return painter_; }

 private:
  [[nodiscard]] DrawList drawListOf(const View& view, const PictureRequest& request) const;

  std::function<void(std::string_view)> report_;
  ColourPalette colours_;
  Painter painter_;
  PangoTextMeasurer measurer_;
};

/// One picture, by a renderer of its own.
[[nodiscard]] std::expected<std::string, std::string> renderPicture(
    const View& view, const PictureRequest& request, const RenderingResources& resources);

}  // namespace lanternfold
