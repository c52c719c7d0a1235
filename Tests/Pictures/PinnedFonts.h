// The typefaces of golden pictures: the same files on every machine, whatever else is installed.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace lanternfold {

/// A file of a Debian package that pictures are drawn with.
struct PinnedFont {
  const char* package;
  const char* file;
};

[[nodiscard]] const std::vector<PinnedFont>& pinnedFonts();

/// A configuration of fontconfig in which there are those and no others; its cache is kept in
/// `cacheFolder`.
[[nodiscard]] std::string fontConfiguration(const std::filesystem::path& cacheFolder);

}  // namespace lanternfold
