// Writing a picture so that a full disk or a stop never leaves half of one behind.
#pragma once

#include <expected>
#include <filesystem>
#include <string>
#include <string_view>

namespace lanternfold {

/// Writes `bytes` beside `file` and moves them into its place once they are on the disk; what stood
/// there before stays until then. A symbolic link is followed, and something that is no file (a
/// pipe, a terminal) is written to as it is. The error is a sentence for the user.
[[nodiscard]] std::expected<void, std::string> writePictureFile(const std::filesystem::path& file,
                                                                std::string_view bytes);

}  // namespace lanternfold
