// Views as JSON: how an extension hands its views to the host that draws them.
//
// Written by: the extension. Read by: the host, which trusts nothing of it. Written down in
// Docs/formats/view-archive.md.
#pragma once

#include <cstddef>
#include <expected>
#include <string>
#include <string_view>

#include "ViewTree/View.h"

namespace lanternfold {

/// The limits of an archive, which the encoder keeps and the decoder insists on.
inline constexpr std::size_t longestViewArchive = std::size_t{4} * 1024 * 1024;  ///< bytes
inline constexpr std::size_t longestArchivedText = std::size_t{64} * 1024;       ///< bytes
inline constexpr std::size_t deepestArchivedNode = 64;  ///< nodes from the root, itself included
inline constexpr std::size_t mostArchivedNodes = 10'000;
inline constexpr std::size_t mostRowSpacings = 16;
inline constexpr std::size_t mostGridColumns = 16;
inline constexpr std::size_t mostArchivedLines = 1000;  ///< of a text
/// Points of any length, in both directions.
inline constexpr double largestArchivedLength = 100'000;

struct ArchiveValue;

/// Why a text is no archive, or one that asks for too much.
struct ViewArchiveFault {
  std::string path;      ///< such as "root.children[3].fontSize"; empty for the whole
  std::string sentence;  ///< one sentence about what stands there
  friend bool operator==(const ViewArchiveFault&, const ViewArchiveFault&) = default;
};

/// Always an archive that `viewOfArchive` accepts, on one line. Of a view that keeps to the limits
/// it is all; of a larger one the last children of stacks are left out, what lies too deep is
/// empty, numbers are brought within their bounds and texts made fit to show.
[[nodiscard]] std::string archiveJson(const View& view);

/// `json` is any bytes at all. Members that are not known are ignored; texts are made fit to show.
/// Time and memory are bounded by the limits.
[[nodiscard]] std::expected<View, ViewArchiveFault> viewOfArchive(std::string_view json);

/// The same of an archive that stands in a larger text, which has been parsed as bounded
/// (ViewTree/ArchiveValue.h).
[[nodiscard]] std::expected<View, ViewArchiveFault> viewOfArchive(const ArchiveValue& value);

}  // namespace lanternfold
