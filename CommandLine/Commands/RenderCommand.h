// `lanternfold-widgets render`: a widget as a picture file.
#pragma once

#include <expected>

#include "CommandLine/Commands/RenderPlan.h"
#include "Wiring/Console.h"
#include "Wiring/Machine.h"
#include "Wiring/MonitorGraph.h"

namespace lanternfold {

/// Writes the picture and says where it is. The file appears whole or not at all. The adapter
/// widget belongs to no application group, whatever `monitor` says.
[[nodiscard]] std::expected<void, CommandFailure> runRender(const RenderPlan& plan,
                                                            const MonitorOptions& monitor,
                                                            const Machine& machine,
                                                            const Console& console);

}  // namespace lanternfold
