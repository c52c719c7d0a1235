// The time of drawing as the timestamp shows it.
#pragma once

#include <chrono>
#include <string>

#include "Platform/StringTable.h"

namespace lanternfold {

/// `now` seen at `now`, in the process's time zone: "Today, 10:30".
[[nodiscard]] std::string timeOfDrawing(std::chrono::system_clock::time_point now,
                                        const StringTable& strings);

}  // namespace lanternfold
