// What the files of the production's metrics storage are called.
//
// Read by: the wiring, and whoever explains why one of them could not be written.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace lanternfold {

/// The name of the storage in its folder.
inline constexpr const char* metricsStorageName = "default";

/// The file of the storage in `folder` that ends in `ending`.
[[nodiscard]] inline std::filesystem::path metricsFile(const std::filesystem::path& folder,
                                                       std::string_view ending) {
  return folder / (std::string("connection-metrics-storage_") + metricsStorageName).append(ending);
}

}  // namespace lanternfold
