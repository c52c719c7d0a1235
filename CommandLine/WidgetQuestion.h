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

/// As it stands on the command line, not yet checked.
struct WidgetOptions {
  std::string kind;
  std::optional<std::string> family;  ///< the widget's largest by default
  std::optional<std::string> adapter;
  bool showTimestamp = false;
};

/// KIND, --family and --adapter. `options` outlives the parsing.
void addWidgetChoice(CLI::App& command, WidgetOptions& options);
/// The same and --show-timestamp.
void addWidgetOptions(CLI::App& command, WidgetOptions& options);

/// The failure names what is wrong of the kind, the family or the adapter, and what may stand
/// there.
[[nodiscard]] std::expected<EntryCall, CommandFailure> widgetQuestion(const WidgetOptions& options,
                                                                      EntryCall::Kind entry);

/// The entry or the timeline, of a machine that has been read for the latter. Asks nobody for
/// consent. Fails when the machine does not let itself be read, or has not answered within half a
/// minute. Main thread.
[[nodiscard]] std::expected<ServiceResult, CommandFailure> askWidget(const EntryCall& question,
                                                                     const MonitorOptions& monitor,
                                                                     const Machine& machine,
                                                                     const Console& console);

}  // namespace lanternfold
