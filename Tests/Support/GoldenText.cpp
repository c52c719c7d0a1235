#include "Tests/Support/GoldenText.h"

#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace lanternfold {
namespace {

bool isUpdating() {
  const char* value = std::getenv("LANTERNFOLD_GOLDEN_UPDATE");
  return value && std::string_view(value) == "1";
}

std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::string lineAt(const std::vector<std::string>& lines, std::size_t index) {
  return index < lines.size() ? lines[index] : "(no such line)";
}

}  // namespace

void expectGolden(const std::filesystem::path& file, const std::string& actual) {
  if (isUpdating()) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << actual;
    return;
  }
  std::ifstream stream(file, std::ios::binary);
  ASSERT_TRUE(stream) << file << " is missing; make it with LANTERNFOLD_GOLDEN_UPDATE=1";
  const std::string expected{std::istreambuf_iterator<char>(stream), {}};
  if (actual == expected) return;
  const std::vector<std::string> expectedLines = linesOf(expected);
  const std::vector<std::string> actualLines = linesOf(actual);
  std::size_t line = 0;
  while (line < expectedLines.size() && line < actualLines.size() &&
         expectedLines[line] == actualLines[line]) {
    ++line;
  }
  ADD_FAILURE() << file << " differs from line " << line + 1
                << " on\n  expected: " << lineAt(expectedLines, line)
                << "\n  actual:   " << lineAt(actualLines, line)
                << "\nIf the change is wanted, run the test with LANTERNFOLD_GOLDEN_UPDATE=1.";
}

}  // namespace lanternfold
