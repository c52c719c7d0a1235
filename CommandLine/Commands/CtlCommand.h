// `lanternfold-widgets ctl`: the widgets on the desktop, arranged from a terminal or a script.
#pragma once

#include <expected>
#include <optional>
#include <string>

#include "CommandLine/WidgetQuestion.h"
#include "Wiring/Console.h"
#include "Wiring/Machine.h"

namespace lanternfold {

/// A widget that the desktop is to show, checked.
struct NewWidget {
  std::string kind;
  std::string family;   ///< empty for the widget's largest
  std::string adapter;  ///< empty for what the widget chooses itself
};

/// The failure names what is wrong, and what may stand there.
[[nodiscard]] std::expected<NewWidget, CommandFailure> checkNewWidget(const WidgetOptions& options);

/// The failure of an id that no widget has: an empty one, which the host takes for all of them, one
/// that is too long to be handed on, or that is no UTF-8.
[[nodiscard]] std::expected<void, CommandFailure> checkWidgetId(const std::string& id);

/// Each fails when no widgets are shown.
[[nodiscard]] std::expected<void, CommandFailure> runCtlList(bool json, const Machine& machine,
                                                             const Console& console);
/// Writes the id of the new widget.
[[nodiscard]] std::expected<void, CommandFailure> runCtlAdd(const NewWidget& widget,
                                                            const Machine& machine,
                                                            const Console& console);
[[nodiscard]] std::expected<void, CommandFailure> runCtlRemove(const std::string& id,
                                                               const Machine& machine);
/// Every widget without an id.
[[nodiscard]] std::expected<void, CommandFailure> runCtlReload(const std::optional<std::string>& id,
                                                               const Machine& machine);
[[nodiscard]] std::expected<void, CommandFailure> runCtlQuit(const Machine& machine);

}  // namespace lanternfold
