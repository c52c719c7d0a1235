// What a command works on: given on the command line, in a file or on standard input.
#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <optional>
#include <string>

#include "Platform/FileSystem.h"
#include "Wiring/Console.h"

namespace lanternfold {

/// Longer input is refused.
inline constexpr std::size_t longestInputBytes = std::size_t{16} * 1024 * 1024;

/// Where it is; standard input without any. The file may be a pipe, which is waited for until
/// whoever writes into it is done.
struct InputSource {
  std::optional<std::string> argument;
  std::optional<std::filesystem::path> file;
};

/// Every byte of it. The failure says what cannot be read, and what to do.
[[nodiscard]] std::expected<std::string, CommandFailure> readInput(const InputSource& source,
                                                                   const FileSystem& files,
                                                                   const Console& console);

/// The same for a text: of a file and of standard input without the line break at the end.
[[nodiscard]] std::expected<std::string, CommandFailure> readInputLine(const InputSource& source,
                                                                       const FileSystem& files,
                                                                       const Console& console);

}  // namespace lanternfold
