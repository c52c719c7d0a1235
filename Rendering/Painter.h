// Paints draw lists with cairo, on whatever surface the context draws to.
//
// Made by: whoever draws, once; what is dear to make is kept from one picture to the next, in
// bounded room.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "Rendering/AssetPainter.h"
#include "Rendering/CairoHandles.h"
#include "Rendering/CirclePainter.h"
#include "Rendering/Gradients.h"
#include "Rendering/RoundedClips.h"
#include "Rendering/TextLines.h"
#include "Rendering/TextPainter.h"
#include "ViewTree/DrawList.h"

namespace lanternfold {

/// Used on one thread.
class Painter {
 public:
  /// `assets` is the folder of the symbols and the logo. `report` is told in a line each, once,
  /// what had to be drawn by a stand-in. `language` as of `RenderingResources`.
  Painter(std::filesystem::path assets, std::function<void(std::string_view)> report,
          const std::string& language = {});

  /// Paints `list` in order; a unit of `surface` is a point. Whatever the list holds, the work is
  /// bounded: what has no size, stands at no place or would make the picture's area be painted over
  /// and over again is left out. The context is left as it was.
  void paint(const DrawList& list, cairo_t* surface);

  /// What texts are measured and painted with.
  [[nodiscard]] TextLines& texts() { return texts_; }

 private:
  friend class CommandPainter;

  std::function<void(std::string_view)> report_;
  TextLines texts_;
  TextPainter textPainter_;
  AssetPainter assets_;
  CirclePainter circles_;
  Gradients gradients_;
  CornerShapes corners_;
};

}  // namespace lanternfold
