// Folders of one user, and where the user wants them.
//
// Read by: `DataDirectory`, `ConfigurationDirectory`.
#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string>

namespace lanternfold {

/// What the product's folder is called, wherever it stands.
inline constexpr const char* productFolder = "net.quernaple.LanternfoldX";

/// In `$VARIABLE`, which counts only when it is absolute; else in `belowHome` of `$HOME`, or of the
/// home folder that the password database knows. None for a user without a home.
[[nodiscard]] std::optional<std::filesystem::path> usersFolder(const char* variable,
                                                               const char* belowHome);

/// With what the user can choose another folder stands at the end of each sentence.
[[nodiscard]] std::unexpected<std::string> cannotMakeFolder(const std::filesystem::path& path,
                                                            int error, const std::string& chooser);

/// Refuses a folder that belongs to another user, or that others may write into: they could put
/// their own files in the place of the program's.
[[nodiscard]] std::expected<void, std::string> checkPrivateFolder(const std::filesystem::path& path,
                                                                  const std::string& chooser);

/// With mode 0700, parents included; one that is there is checked.
[[nodiscard]] std::expected<void, std::string> makePrivateFolder(const std::filesystem::path& path,
                                                                 const std::string& chooser);

}  // namespace lanternfold
