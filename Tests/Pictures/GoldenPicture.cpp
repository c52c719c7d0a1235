#include "Tests/Pictures/GoldenPicture.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string_view>

#include <gtest/gtest.h>

#include "Tests/Pictures/EncodedPng.h"
#include "Tests/Pictures/PictureDifference.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;

std::string contentsOf(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// None when they look the same.
std::optional<PictureFinding> compared(const std::string& name, const std::string& blessed,
                                       const std::string& actual) {
  PictureFinding finding{.name = name,
                         .sentence = "there is no blessed picture yet",
                         .blessed = blessed,
                         .actual = actual,
                         .difference = {}};
  if (blessed.empty()) return finding;
  const Picture before = decodedPng(blessed);
  const Picture now = decodedPng(actual);
  const auto sentence = describedDifference(before, now);
  if (!sentence) return std::nullopt;
  finding.sentence = *sentence;
  finding.difference = encodedPng(differencePicture(before, now));
  return finding;
}

}  // namespace

GoldenPictures GoldenPictures::ofThisTree() {
  const char* const update = std::getenv("LANTERNFOLD_GOLDEN_UPDATE");
  return {.folder = fs::path(LANTERNFOLD_SOURCE_DIR) / "Tests/Pictures/Golden",
          .report = PictureReport(fs::path(LANTERNFOLD_BINARY_DIR) / "golden-report"),
          .isUpdating = update != nullptr && std::string_view(update) == "1"};
}

void expectGoldenPicture(const GoldenPictures& pictures, const std::string& name,
                         const std::string& png) {
  const fs::path file = pictures.folder / (name + ".png");
  if (pictures.isUpdating) {
    fs::create_directories(pictures.folder);
    std::ofstream(file, std::ios::binary) << png;
    pictures.report.remove(name);
    return;
  }
  const auto finding = compared(name, contentsOf(file), png);
  if (!finding) {
    pictures.report.remove(name);
    return;
  }
  pictures.report.add(*finding);
  ADD_FAILURE() << name << ".png: " << finding->sentence
                << "\nOld, new and difference: " << pictures.report.page().string()
                << "\nIf the change is wanted: make golden-update FILTER=" << name;
}

}  // namespace lanternfold
