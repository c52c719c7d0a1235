// The entry that a widget of the network's state is drawn from.
#pragma once

#include <expected>

#include "CommandLine/EntrySource.h"
#include "NetworkWidgetVexExtension/Providers/NetworkStateEntry.h"
#include "Wiring/Console.h"
#include "Wiring/Machine.h"
#include "Wiring/MonitorGraph.h"

namespace lanternfold {

/// Which widget's entry, and what it is to be made with.
struct StateEntryRequest {
  EntrySource source = EntrySource::timeline;
  NetworkSourceCategory categories;
  ConfigurationIntent configuration;
  MonitorOptions monitor;
};

/// Reads the machine for a timeline entry only, and fails when it does not let itself be read, or
/// has not answered within half a minute.
[[nodiscard]] std::expected<NetworkStateEntry, CommandFailure> drawableStateEntry(
    const StateEntryRequest& request, const Machine& machine);

}  // namespace lanternfold
