// The sandbox that this program runs in, if it runs in one, as the file says that is put into it.
//
// Made by: the composition. Read by: whatever has to know who decides on the location.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/FileSystem.h"

namespace lanternfold {

struct Sandbox {
  /// The application as the system knows it, such as "net.quernaple.LanternfoldX"; empty when the
  /// file does not say it. At most 255 characters: letters, digits, and "._-".
  std::string applicationId;

  friend bool operator==(const Sandbox&, const Sandbox&) = default;
};

/// Longer files are not read.
inline constexpr std::size_t longestSandboxFile = 64 * std::size_t{1024};

/// The text is a key file with `name` in the group `Application`; whatever else it is, it tells of
/// a sandbox.
[[nodiscard]] Sandbox parseSandboxFile(std::string_view text);

/// None outside a sandbox, where nothing stands at `file`. A file that cannot be read is one of a
/// sandbox that does not say who is in it.
[[nodiscard]] std::optional<Sandbox> findSandbox(const std::filesystem::path& file,
                                                 const FileSystem& files);

}  // namespace lanternfold
