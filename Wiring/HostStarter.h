// Starts the program that shows the widgets on the desktop.
//
// Production side: `ProcessHostStarter`. Fake: `FakeHostStarter`.
#pragma once

#include <expected>
#include <string>
#include <vector>

#include "Wiring/Console.h"

namespace lanternfold {

/// Main thread. `arguments` come without the program's name.
class HostStarter {
 public:
  virtual ~HostStarter() = default;

  /// The host takes the place of this program. Returns only when it cannot be started.
  [[nodiscard]] virtual CommandFailure become(const std::vector<std::string>& arguments) = 0;

  /// Starts the host in a session of its own, and returns when it shows the widgets, when it has
  /// tried to for ten seconds, or when it has found that another one shows them. A host that fails
  /// has said why on standard error: the failure has its status then, and no sentence.
  [[nodiscard]] virtual std::expected<void, CommandFailure> startDetached(
      const std::vector<std::string>& arguments) = 0;
};

}  // namespace lanternfold
