// What the commands that draw have in common: the scale, the entries and the file of their
// pictures, and how a picture gets there.
//
// Used by: `render` and `gallery`.
#pragma once

#include <expected>
#include <filesystem>
#include <string>

#include "Rendering/PictureRenderer.h"
#include "WidgetService/ServiceMessage.h"
#include "Wiring/Console.h"
#include "Wiring/Machine.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace lanternfold {

/// What `--scale` takes.
inline constexpr const char* scaleValues = "a number from 0.5 to 8, such as 2 or 1.5";

/// As they stand on the command line, not yet checked.
struct PictureOptions {
  std::string scale = "2";  ///< pixels a point
  std::string entry;
  std::filesystem::path output;
};

/// --scale and --output. `options` outlives the parsing; the option returned is that of the file.
CLI::Option* addPictureOptions(CLI::App& command, PictureOptions& options);

/// They have been understood.
struct PictureChoice {
  double scale = 2;
  EntryCall::Kind entry = EntryCall::Kind::placeholder;
  PictureFormat format = PictureFormat::png;  ///< by the ending of the file's name
  std::filesystem::path output;
};

/// The failure names the first option that is wrong and what may stand there.
[[nodiscard]] std::expected<PictureChoice, CommandFailure> checkPictureOptions(
    const PictureOptions& options);

/// Draws `view` as `request` says, at this moment, and says where the file is. It appears whole or
/// not at all; what was drawn by a stand-in is a line each among the errors.
[[nodiscard]] std::expected<void, CommandFailure> writePicture(const View& view,
                                                               PictureRequest request,
                                                               const std::filesystem::path& output,
                                                               const Machine& machine,
                                                               const Console& console);

}  // namespace lanternfold
