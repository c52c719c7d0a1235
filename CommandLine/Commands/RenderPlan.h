// What `lanternfold-widgets render` is to draw, once its options have been checked.
#pragma once

#include <expected>
#include <filesystem>
#include <string>

#include "CommandLine/WidgetQuestion.h"
#include "NetworkMonitor/Model/NetworkSourceCategory.h"
#include "NetworkWidgetVexExtension/Intents/AdapterConfigurationIntent.h"
#include "NetworkWidgetVexExtension/Intents/ConfigurationIntent.h"
#include "Rendering/PictureRenderer.h"
#include "WidgetService/WidgetFamily.h"
#include "Wiring/Console.h"

namespace lanternfold {

/// What `--scale` takes.
inline constexpr const char* scaleValues = "a number from 0.5 to 8, such as 2 or 1.5";

/// As they stand on the command line, not yet checked.
struct RenderOptions {
  WidgetOptions widget;
  std::string scheme = "light";
  std::string scale = "2";  ///< pixels a point
  std::string entry = "timeline";
  std::filesystem::path output;
};

struct RenderPlan {
  EntryCall question;
  /// Whole but for the time of drawing.
  PictureRequest picture;
  std::filesystem::path output;
};

/// Checks every option; reads and writes nothing. The failure names the
/// first option that is wrong and what may stand there.
[[nodiscard]] std::expected<RenderPlan, CommandFailure> planRender(const RenderOptions& options);

}  // namespace lanternfold
