// What a command asks of one widget, and what it gets: the same that a host gets over its socket.
//
// Made by: `render` and `timeline`.
#pragma once

#include <expected>
#include <optional>
#include <string>

#include "NetworkWidgetVexExtension/Service/WidgetResponder.h"
#include "WidgetService/ServiceMessage.h"
#include "Wiring/Console.h"
#include "Wiring/Machine.h"
#include "Wiring/MonitorGraph.h"

namespace CLI {
class App;
}

namespace lanternfold {

/// The widgets' kinds, for help.
inline constexpr const char* widgetKinds =
    "PanoramicNetworkStateWidget, InternetNetworkStateWidget, NetworkAdapterWidget, "
    "BandwidthMonitorWidget or WlanNetworkStateWidget";

/// As it stands on the command line.
struct WidgetQuestion {
  std::string kind;
  std::optional<std::string> family;  ///< the widget's largest by default
  std::optional<std::string> adapter;
  bool showTimestamp = false;
};

/// KIND, --family, --adapter and --show-timestamp. `question` outlives the parsing.
void addWidgetOptions(CLI::App& command, WidgetQuestion& question);

struct WidgetAnswer {
  WidgetFamily family = WidgetFamily::small;
  ServiceResult result;  ///< an entry or a timeline
};

/// Asks nobody for consent. A kind, a family or an adapter that makes no sense is a failure of bad
/// arguments that says what may stand there; for a timeline, a machine that does not let itself be
/// read or has not answered within half a minute is one of the work. Main thread.
[[nodiscard]] std::expected<WidgetAnswer, CommandFailure> askWidget(const WidgetQuestion& question,
                                                                    EntryCall::Kind entry,
                                                                    const MonitorOptions& monitor,
                                                                    const Machine& machine,
                                                                    const Console& console);

}  // namespace lanternfold
