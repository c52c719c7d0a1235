// `lanternfold-widgets render`: a widget as a picture file.
#pragma once

#include <expected>

#include "CommandLine/Commands/RenderPlan.h"
#include "CommandLine/Console.h"
#include "CommandLine/Machine.h"

namespace lanternfold {

/// Writes the picture and says where it is. The file appears whole or not at all.
[[nodiscard]] std::expected<void, CommandFailure> runRender(const RenderPlan& plan,
                                                            const Machine& machine,
                                                            const Console& console);

}  // namespace lanternfold
