// Where the program's own files are: beside it when it is installed, in the source or build tree
// otherwise.
#pragma once

#include <filesystem>

namespace lanternfold {

/// Where this program stands; the others of the product stand beside it.
[[nodiscard]] std::filesystem::path programFolder();

/// The folder of symbols, logo and colours.
[[nodiscard]] std::filesystem::path assetsFolder();

/// The folder of compiled message catalogues, LANGUAGE/LC_MESSAGES/DOMAIN.mo.
[[nodiscard]] std::filesystem::path translationsFolder();

}  // namespace lanternfold
