// Reads the text of a storage's data file, apart from the product's own decoder and stricter: the
// form that the storage writes and nothing else.
#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "Tests/Simulation/ExpectedMetrics.h"

namespace lanternfold::simulation {

/// What the file says, without the truth behind it. Every interface has both records. The error is
/// a sentence.
[[nodiscard]] std::expected<RememberedInterfaces, std::string> readDataFileText(
    std::string_view text);

/// One record by itself, as the user defaults hold it.
[[nodiscard]] std::expected<ConnectionMetrics, std::string> readRecordText(std::string_view text);

}  // namespace lanternfold::simulation
