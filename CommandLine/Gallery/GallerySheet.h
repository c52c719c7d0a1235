// One sheet with every widget on it: on a light wallpaper in the light scheme, beside it on a dark
// one in the dark scheme.
//
// Made by: `gallery`, of what the widgets have answered. Pure.
#pragma once

#include <string>
#include <vector>

#include "Platform/StringTable.h"
#include "ViewTree/Geometry.h"
#include "ViewTree/View.h"
#include "WidgetService/WidgetFamily.h"

namespace lanternfold {

/// What the sheet is called.
inline constexpr const char* gallerySheetTitle = "Lanternfold Widgets";

/// A widget in one of its families, the same view for both schemes.
struct GalleryCard {
  std::string displayName;
  WidgetFamily family = WidgetFamily::small;
  View view;
};

struct GallerySheet {
  View view;
  Size sizePoints;  ///< what `view` is to be laid out in
};

/// `cards` in their order, each with its widget's name and its family below it. `strings` are those
/// of the program.
[[nodiscard]] GallerySheet makeGallerySheet(const std::vector<GalleryCard>& cards,
                                            const StringTable& strings);

}  // namespace lanternfold
