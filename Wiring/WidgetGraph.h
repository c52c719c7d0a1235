// The extension's widgets over a program's machine.
//
// Called by: whoever serves them, over a socket or to itself.
#pragma once

#include <vector>

#include "NetworkWidgetVexExtension/Service/WidgetResponder.h"
#include "WidgetService/Widget.h"
#include "Wiring/Machine.h"
#include "Wiring/MonitorGraph.h"

namespace lanternfold {

/// As an extension has them: little time for the services, and adapters whose traffic is locked
/// away for the moment are left out. `machine` outlives the widgets and their requests. Main queue.
[[nodiscard]] std::vector<Widget> makeWidgets(const Machine& machine,
                                              const MonitorOptions& options);

/// Answers for `widgets` of `machine`.
[[nodiscard]] WidgetResponder makeWidgetResponder(const Machine& machine,
                                                  std::vector<Widget> widgets);

}  // namespace lanternfold
