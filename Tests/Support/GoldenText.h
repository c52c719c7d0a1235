// Comparing a text with the one that was looked at and blessed before.
#pragma once

#include <filesystem>
#include <string>

namespace lanternfold {

/// Fails the running test when `actual` differs from the contents of `file`, naming the first line
/// that does. With LANTERNFOLD_GOLDEN_UPDATE=1 in the environment it writes `file` instead: look at
/// the change before you commit it.
void expectGolden(const std::filesystem::path& file, const std::string& actual);

}  // namespace lanternfold
