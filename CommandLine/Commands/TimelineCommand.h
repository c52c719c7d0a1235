// `lanternfold-widgets timeline`: what a widget shows of this machine, as text or as its host gets
// it.
#pragma once

#include <expected>

#include "CommandLine/WidgetQuestion.h"
#include "Wiring/Console.h"
#include "Wiring/Machine.h"
#include "Wiring/MonitorGraph.h"

namespace lanternfold {

struct TimelineOptions {
  EntryCall question;
  bool json = false;
};

/// One request for a timeline, as the widget extension answers it: with its limits of time for the
/// services, and without asking for consent.
[[nodiscard]] std::expected<void, CommandFailure> runTimeline(const TimelineOptions& options,
                                                              const MonitorOptions& monitor,
                                                              const Machine& machine,
                                                              const Console& console);

}  // namespace lanternfold
