// Reads a small text file of the kernel whole.
//
// Read by: the readers of /proc.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace lanternfold {

/// The file's text; none when it cannot be opened or read, or is longer than `maximumSize` bytes.
[[nodiscard]] std::optional<std::string> readTextFile(const char* path, std::size_t maximumSize);

}  // namespace lanternfold
