// `lanternfold-widgets render`: a widget as a picture file.
#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string>

#include "CommandLine/Console.h"
#include "CommandLine/Machine.h"

namespace lanternfold {

/// As they stand on the command line, not yet checked.
struct RenderOptions {
  std::string kind;
  std::string family = "medium";
  std::string scheme = "light";
  double scale = 2;  ///< pixels a point
  std::string entry = "timeline";
  std::optional<std::string> adapter;
  bool showTimestamp = false;
  std::filesystem::path output;
};

/// Writes the picture and says where it is. Every option is checked before anything is read or
/// written; the file appears whole or not at all.
[[nodiscard]] std::expected<void, CommandFailure> runRender(const RenderOptions& options,
                                                            const Machine& machine,
                                                            const Console& console);

}  // namespace lanternfold
