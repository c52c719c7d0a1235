// Paints the symbols and pictures of the product. On pixels each is drawn once a size, its edges
// moved between them, and kept; in a file of vectors it stays lines.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "Rendering/BoundedCache.h"
#include "Rendering/CairoHandles.h"
#include "Rendering/DeviceGrid.h"
#include "Rendering/SvgAssets.h"
#include "ViewTree/DrawList.h"

namespace lanternfold {

/// Used on one thread.
class AssetPainter {
 public:
  /// `report` is told in one line of every asset that cannot be drawn, once each.
  AssetPainter(std::filesystem::path folder, std::function<void(std::string_view)> report);

  /// As large as the frame allows, all of it in the symbol's colour. An asset that is missing or
  /// broken is drawn as a crossed-out square.
  void paint(cairo_t* surface, const DeviceGrid& grid, const DrawSymbol& symbol);
  /// The same, in its own colours.
  void paint(cairo_t* surface, const DeviceGrid& grid, const DrawImage& image);

 private:
  /// What a drawing on pixels depends on; where it stands and its tint do not belong to it.
  struct Key {
    std::string name;
    std::optional<double> strength;
    int width = 0;  // in pixels
    int height = 0;
    friend bool operator==(const Key&, const Key&) = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const;
  };

  /// The drawing in white where it asks for the current colour; null when there is none.
  [[nodiscard]] cairo_surface_t* drawing(const Key& key);
  void paintLines(cairo_t* surface, const Rect& frame, const std::string& name, const Rgba& colour,
                  std::optional<double> strength);

  /// Tries it out, since a drawing that fails in its midst leaves a context as it then was.
  [[nodiscard]] bool canDraw(const std::string& name, const Rect& frame, const Rgba& colour,
                             std::optional<double> strength);

  SvgAssets assets_;
  BoundedCache<Key, CairoSurface, KeyHash, std::equal_to<>> drawings_;
};

}  // namespace lanternfold
