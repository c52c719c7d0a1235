// `lanternfold-widgets wifi`: everything the kernel tells of the Wi-Fi.
#pragma once

#include <expected>

#include "Wiring/Console.h"
#include "Wiring/Machine.h"

namespace lanternfold {

struct WifiOptions {
  bool json = false;
};

/// A machine without Wi-Fi is a result; a kernel that refuses to tell is a failure. How a withheld
/// name can be shown is one line among the errors.
[[nodiscard]] std::expected<void, CommandFailure> runWifi(const WifiOptions& options,
                                                          const Machine& machine,
                                                          const Console& console);

}  // namespace lanternfold
