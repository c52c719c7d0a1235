// Where the program keeps what outlives it: one folder of the user's, and what stands where in it.
//
// Made by: the composition, with the folder of `--data-dir`. Read by: the settings' databases, the
// group containers, the consent to show Wi-Fi names.
#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace lanternfold {

/// Folders are made with mode 0700 when they are asked for, parents included. One that is there
/// keeps its permissions; it is refused when it belongs to another user or when others may write
/// into it, since they could put their own files in the place of the program's. An error is a
/// sentence for the user. Any thread.
class DataDirectory {
 public:
  using Folder = std::expected<std::filesystem::path, std::string>;

  /// In `chosen` when given; else in `$XDG_DATA_HOME`, which counts only when it is absolute; else
  /// in `.local/share` of `$HOME`, or of the home folder that the password database knows.
  explicit DataDirectory(const std::optional<std::filesystem::path>& chosen = std::nullopt);

  /// Whether or not it is there; absolute.
  [[nodiscard]] const Folder& location() const { return location_; }

  /// The folder itself.
  [[nodiscard]] Folder folder() const;
  /// For whoever only reads: why the folder itself is refused, if it is there; it is not made.
  [[nodiscard]] std::expected<void, std::string> checkIfThere() const;
  /// Of the settings' databases.
  [[nodiscard]] Folder defaultsFolder() const;
  /// Of the group `groupId`, which is a group identifier.
  [[nodiscard]] Folder groupFolder(std::string_view groupId) const;
  /// Of the counters that are remembered without a group.
  [[nodiscard]] Folder metricsFolder() const;

 private:
  [[nodiscard]] Folder folderBelow(const std::filesystem::path& names) const;

  Folder location_;
};

}  // namespace lanternfold
