// What a user can do about a file or a folder that the system refuses.
#pragma once

#include <filesystem>
#include <string>
#include <system_error>

namespace lanternfold {

/// A clause that says what to do about `error`, of the generic category.
[[nodiscard]] std::string remedyFor(std::error_code error);

/// A clause that names the file, the cause and what to do.
[[nodiscard]] std::string cannotWrite(const std::filesystem::path& file, std::error_code error);

}  // namespace lanternfold
