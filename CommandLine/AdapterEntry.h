// The entry that the adapter widget is drawn from.
#pragma once

#include <expected>
#include <string>
#include <vector>

#include "CommandLine/EntrySource.h"
#include "NetworkWidgetVexExtension/Providers/NetworkAdapterEntry.h"
#include "Wiring/Console.h"
#include "Wiring/Machine.h"

namespace lanternfold {

struct DrawableAdapterEntry {
  NetworkAdapterEntry entry;
  /// The interface of the best default route, or nothing.
  std::vector<std::string> preferredInterfaceNames;
};

/// Reads the machine for a timeline entry only, and fails when it does not let itself be
/// read.
[[nodiscard]] std::expected<DrawableAdapterEntry, CommandFailure> drawableAdapterEntry(
    EntrySource source, const AdapterConfigurationIntent& configuration, const Machine& machine);

}  // namespace lanternfold
