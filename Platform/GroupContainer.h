// The seam to the folders that the product's programs share: one for each application group.
//
// Linux side: `LinuxGroupContainer`, below the user's data folder. Fake: `FakeGroupContainer`.
#pragma once

#include <algorithm>
#include <expected>
#include <filesystem>
#include <string>
#include <string_view>

namespace lanternfold {

/// Whether a text can name an application group: 1 to 128 letters, digits, points, hyphens and
/// underscores of ASCII, the first one neither a point nor a hyphen. It is a file name, never a
/// path.
[[nodiscard]] inline bool isGroupIdentifier(std::string_view text) {
  const auto isLetterOrDigit = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
  };
  return !text.empty() && text.size() <= 128 && text.front() != '.' && text.front() != '-' &&
         std::ranges::all_of(
             text, [&](char c) { return isLetterOrDigit(c) || c == '.' || c == '-' || c == '_'; });
}

/// Any thread; blocks for the disk.
class GroupContainer {
 public:
  virtual ~GroupContainer() = default;

  /// A folder, or a clause for the user that names it, says why it cannot be had and what to do.
  using Folder = std::expected<std::filesystem::path, std::string>;

  /// The folder of a group, made (mode 0700) when it is not there; fails when `groupId` is no group
  /// identifier or the folder cannot be made or used.
  [[nodiscard]] virtual Folder folder(std::string_view groupId) = 0;

  /// The folder of what belongs to no group, made in the same way; fails when it cannot be made or
  /// used.
  [[nodiscard]] virtual Folder metricsFolder() = 0;
};

}  // namespace lanternfold
