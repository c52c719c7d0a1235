// `lanternfold-widgets record`: the traffic of this machine, remembered.
#pragma once

#include <chrono>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include "Wiring/Console.h"
#include "Wiring/Machine.h"

namespace lanternfold {

struct RecordOptions {
  bool once = false;
  bool json = false;
  /// Between samples until the traffic first changes its class; the recorder's own when not given.
  std::optional<std::chrono::seconds> interval;
  /// The group in whose folder the traffic is remembered; none for the folder without a group.
  std::optional<std::string> appGroupId;
};

/// What `--interval` takes.
inline constexpr const char* intervalValues = "a whole number of seconds from 1 to 86400";

/// The value of `--interval`.
[[nodiscard]] std::expected<std::chrono::seconds, CommandFailure> parseInterval(
    std::string_view text);

/// The failure names the option that is wrong and what may stand there.
[[nodiscard]] std::expected<void, CommandFailure> checkRecordOptions(const RecordOptions& options);

/// Goes on until the program is asked to end, and then after the step under way. A sample that
/// fails is a line among the diagnostics, or with `once` the failure. A second recorder of the same
/// file says that there is one and is done.
[[nodiscard]] std::expected<void, CommandFailure> runRecord(const RecordOptions& options,
                                                            const Machine& machine,
                                                            const Console& console);

}  // namespace lanternfold
