// `lanternfold-widgets gallery`: one picture of every widget in every family, light and dark.
#pragma once

#include <expected>

#include "CommandLine/Commands/PictureOptions.h"
#include "Wiring/Console.h"
#include "Wiring/Machine.h"
#include "Wiring/MonitorGraph.h"

namespace lanternfold {

/// What `gallery` draws unless it is told otherwise: samples, into a file of the current folder.
[[nodiscard]] PictureOptions defaultGalleryOptions();

/// Asks every widget of the catalogue once for each of its families, writes the sheet and says
/// where it is. On a machine whose Wi-Fi cannot be read the widget of the Wi-Fi is left out, which
/// is a line; on one that cannot be read at all it fails. The file appears whole or not at all.
[[nodiscard]] std::expected<void, CommandFailure> runGallery(const PictureChoice& choice,
                                                             const MonitorOptions& monitor,
                                                             const Machine& machine,
                                                             const Console& console);

}  // namespace lanternfold
