// An /etc of the test's own, inside a test's namespace.
#pragma once

#include <filesystem>
#include <fstream>
#include <string_view>
#include <sys/mount.h>

namespace lanternfold {

/// Empty to begin with; gone with the `NetworkNamespace` that is entered.
class PrivateEtc {
 public:
  [[nodiscard]] static bool mount() {
    return ::mount("tmpfs", "/etc", "tmpfs", 0, "mode=0755") == 0;
  }

  /// `path` is below /etc.
  static void write(const std::filesystem::path& path, std::string_view text) {
    const std::filesystem::path file = "/etc" / path;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
  }
};

}  // namespace lanternfold
