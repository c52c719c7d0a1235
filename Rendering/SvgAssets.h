// The symbols and pictures of the product: SVG files of a folder, read once.
//
// Used by: the asset painter, on one thread. The folder is the caller's to find.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "Rendering/CairoHandles.h"
#include "ViewTree/Colour.h"
#include "ViewTree/Geometry.h"

namespace lanternfold {

/// Names come from views, which may be anybody's: no more files are read.
inline constexpr std::size_t maximumAssets = 64;

class SvgAssets {
 public:
  /// `report` is told in one line of every asset that cannot be drawn, once each.
  SvgAssets(std::filesystem::path folder, std::function<void(std::string_view)> report);

  /// Draws the asset `name` as large as `frame` allows, in `colour`, whose opacity is left to the
  /// caller, where it asks for the current colour. The shapes of the classes level1 to level4 stand
  /// for a quarter each: those that `strength` does not reach are faint. False when there is no
  /// such asset, or it cannot be drawn.
  [[nodiscard]] bool draw(cairo_t* surface, const std::string& name, const Rect& frame,
                          const Rgba& colour, std::optional<double> strength);

  /// The same question, without drawing.
  [[nodiscard]] bool has(const std::string& name);

 private:
  [[nodiscard]] RsvgHandle* find(const std::string& name);
  [[nodiscard]] SvgHandle load(const std::string& name);
  void reportOnce(const std::string& name, std::string_view reason);

  std::filesystem::path folder_;
  std::function<void(std::string_view)> report_;
  std::map<std::string, SvgHandle> handles_;  // null for those that there are not
  std::set<std::string> reported_;
};

/// The rules that give a drawing its colour, and the shapes of its levels their opacity.
[[nodiscard]] std::string styleSheet(const Rgba& colour, std::optional<double> strength);

}  // namespace lanternfold
