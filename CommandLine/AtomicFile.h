// Files that appear whole or not at all.
#pragma once

#include <expected>
#include <filesystem>
#include <string>
#include <string_view>

namespace lanternfold {

/// Writes `contents` beside `path` and moves it there: a reader sees the old file or the new one,
/// and a full disk leaves the old one, whose permissions the new one has. A device or a pipe is
/// written to and stays what it is. The error is a sentence for the user.
[[nodiscard]] std::expected<void, std::string> writeFileAtomically(
    const std::filesystem::path& path, std::string_view contents);

}  // namespace lanternfold
