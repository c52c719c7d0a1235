// What the drawing of all cards has in common.
//
// Made by: `HostDesktop`, once. Read by: whatever shows a card. Main thread.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <string_view>

#include "Rendering/PictureRenderer.h"

namespace lanternfold {

struct CardDrawing {
  PictureRenderer& renderer;
  /// Told, a line each, what had to be drawn by a stand-in.
  std::function<void(std::string_view)> report;
  LayoutDirection direction = LayoutDirection::leftToRight;
  /// "Today, 10:30 AM" in the user's language, as seen from now.
  std::function<std::string(std::chrono::system_clock::time_point)> timeText;
  /// That of the desktop; whoever changes it has every card drawn anew.
  ColourScheme scheme = ColourScheme::light;
};

}  // namespace lanternfold
