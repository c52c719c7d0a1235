// A moment as people say it: "Today, 10:30 AM" for today, a short date otherwise.
//
// Read by: the widgets' time of drawing. Locale and time zone are the user's, from the environment.
#pragma once

#include <chrono>
#include <string>

namespace lanternfold {

/// Short date and short time, the date relative where the language has a word for it. UTF-8; empty
/// only when no locale data can be loaded. Any thread.
[[nodiscard]] std::string relativeDateText(std::chrono::system_clock::time_point moment);

}  // namespace lanternfold
