// The symbols and pictures of the product: SVG files of a folder, drawn at any size.
//
// Used by: the painter, on one thread. The folder is the caller's to find.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "Rendering/CairoHandles.h"
#include "ViewTree/Colour.h"
#include "ViewTree/Geometry.h"

namespace lanternfold {

class AssetFolder {
 public:
  /// `report` is told in one line of every asset that cannot be drawn, once each.
  AssetFolder(std::filesystem::path folder, std::function<void(std::string_view)> report);

  /// Draws the asset as large as `frame` allows, in `colour` where it asks for the current colour.
  /// An asset that is missing or broken is drawn as a crossed-out square.
  void drawSymbol(cairo_t* surface, const std::string& name, const Rect& frame, const Rgba& colour);
  /// Draws the asset in its own colours.
  void drawImage(cairo_t* surface, const std::string& name, const Rect& frame, double opacity);

 private:
  [[nodiscard]] const std::optional<std::string>& contents(const std::string& name);
  [[nodiscard]] SvgHandle load(const std::string& name);
  [[nodiscard]] bool draw(cairo_t* surface, const std::string& name, const Rect& frame,
                          const Rgba& colour);
  void reportOnce(const std::string& name, std::string_view reason);

  std::filesystem::path folder_;
  std::function<void(std::string_view)> report_;
  std::map<std::string, std::optional<std::string>> contents_;
  std::map<std::string, bool> reported_;
};

}  // namespace lanternfold
