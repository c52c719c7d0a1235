// Reads the small files of the asset folder.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace lanternfold {

/// No symbol, logo or colour file needs more; a larger one is refused.
inline constexpr std::uintmax_t maximumAssetBytes = 256 * 1024;

/// The file's bytes; none when it is no ordinary file, too large or cannot be read.
[[nodiscard]] std::optional<std::string> readAssetFile(const std::filesystem::path& path);

}  // namespace lanternfold
