// What widgets answer to a command that waits for all of them.
//
// Used by: the commands that ask widgets; the answers are those that a host gets.
#pragma once

#include <expected>
#include <span>
#include <vector>

#include "NetworkWidgetVexExtension/Service/WidgetResponder.h"
#include "WidgetService/ServiceMessage.h"
#include "Wiring/Console.h"
#include "Wiring/Machine.h"

namespace lanternfold {

/// In the order of `calls`, which are asked side by side. Fails with the first error, and when one
/// of them has not answered within half a minute. Main thread.
[[nodiscard]] std::expected<std::vector<ServiceResult>, CommandFailure> widgetAnswers(
    std::span<const EntryCall> calls, const WidgetResponder& responder, const Machine& machine);

/// The view of an entry, or of a timeline's first one; nothing else has a view.
[[nodiscard]] const View& shownView(const ServiceResult& result);

}  // namespace lanternfold
