// Replays a corpus through a fuzz target: every file of the folder given, in the order of the
// names, whole and cut at every length of its first kilobyte.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argumentCount, char** arguments) {
  if (argumentCount != 2 || !std::filesystem::is_directory(arguments[1])) {
    std::fprintf(stderr, "usage: %s CORPUS-FOLDER\n", arguments[0]);
    return 2;
  }
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(arguments[1])) {
    files.push_back(entry.path());
  }
  std::ranges::sort(files);
  constexpr std::size_t longestCut = 1024;
  for (const auto& file : files) {
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> text{std::istreambuf_iterator<char>(stream), {}};
    const std::vector<std::uint8_t> bytes(text.begin(), text.end());
    for (std::size_t length = 0; length < std::min(bytes.size(), longestCut); ++length) {
      const std::vector<std::uint8_t> cut(bytes.begin(),
                                          bytes.begin() + static_cast<std::ptrdiff_t>(length));
      LLVMFuzzerTestOneInput(cut.data(), cut.size());
    }
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  }
  std::printf("%zu files replayed\n", files.size());
  return files.empty() ? 1 : 0;
}
