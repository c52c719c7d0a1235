// What `lanternfold-widgets render` is to draw, once its options have been checked.
#pragma once

#include <expected>
#include <filesystem>
#include <string>

#include "CommandLine/Commands/PictureOptions.h"
#include "CommandLine/WidgetQuestion.h"
#include "Rendering/PictureRenderer.h"
#include "Wiring/Console.h"

namespace lanternfold {

/// As they stand on the command line, not yet checked.
struct RenderOptions {
  WidgetOptions widget;
  std::string scheme = "light";
  PictureOptions picture{.entry = "timeline", .output = {}};
};

struct RenderPlan {
  EntryCall question;
  /// Whole but for what is known only when it is drawn.
  PictureRequest picture;
  std::filesystem::path output;
};

/// Checks every option; reads and writes nothing. The failure names the
/// first option that is wrong and what may stand there.
[[nodiscard]] std::expected<RenderPlan, CommandFailure> planRender(const RenderOptions& options);

}  // namespace lanternfold
