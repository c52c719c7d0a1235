// The JSON of an archive, or of a message that holds some, as values, before they are known to be
// views: bounded in every direction.
//
// Made by: `parseArchive`. Read by: the decoder of archives, the host's reader of answers.
#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "ViewTree/ViewArchive.h"

namespace lanternfold {

struct ArchiveMember;

/// A JSON value; null is the first alternative.
struct ArchiveValue {
  using List = std::vector<ArchiveValue>;
  using Object = std::vector<ArchiveMember>;  ///< no name twice
  std::variant<std::monostate, bool, double, std::string, List, Object> value;
};

struct ArchiveMember {
  std::string name;
  ArchiveValue value;
};

/// As deep as a colour of the deepest node.
inline constexpr std::size_t deepestArchiveValue = 2 * deepestArchivedNode + 2;
/// More than nodes have, to leave room for members that are not known.
inline constexpr std::size_t mostArchiveMembers = 64;
/// Of the whole, lists and objects included.
inline constexpr std::size_t mostArchiveValues = 32 * mostArchivedNodes;

/// Numbers that are too large for a double, names that stand twice in an object, and what goes
/// beyond the limits above is a fault, wherever it stands. `levelsAround` is how deep in the text
/// its archives stand.
[[nodiscard]] std::expected<ArchiveValue, ViewArchiveFault> parseArchive(
    std::string_view json, std::size_t levelsAround = 0);

}  // namespace lanternfold
