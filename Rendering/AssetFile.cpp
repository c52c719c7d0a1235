#include "Rendering/AssetFile.h"

#include <cstddef>
#include <fstream>

namespace lanternfold {

std::optional<std::string> readAssetFile(const std::filesystem::path& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  // One byte more than allowed, since the file may have grown.
  std::string bytes(static_cast<std::size_t>(maximumAssetBytes + 1), '\0');
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (file.bad() || !file.is_open()) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  if (bytes.size() > maximumAssetBytes) return std::nullopt;
  return bytes;
}

}  // namespace lanternfold
