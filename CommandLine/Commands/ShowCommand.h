// `lanternfold-widgets show`: the widgets on the desktop, by the host, which is a program of its
// own.
#pragma once

#include <expected>
#include <optional>
#include <string>
#include <vector>

#include "Wiring/CommonOptions.h"
#include "Wiring/Console.h"
#include "Wiring/Machine.h"

namespace lanternfold {

struct ShowOptions {
  bool detach = false;
  std::optional<std::string> refreshInterval;  ///< as it stands on the command line
};

struct ShowPlan {
  bool detach = false;
  std::vector<std::string> hostArguments;
};

/// The failure names the option that is wrong and what may stand there.
[[nodiscard]] std::expected<ShowPlan, CommandFailure> planShow(const ShowOptions& options,
                                                               const CommonOptions& common);

/// The host takes this program's place, or with `detach` goes on by itself once it shows the
/// widgets.
[[nodiscard]] std::expected<void, CommandFailure> runShow(const ShowPlan& plan,
                                                          const Machine& machine);

}  // namespace lanternfold
