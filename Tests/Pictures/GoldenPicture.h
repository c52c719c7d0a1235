// Comparing a picture with the one that was looked at and blessed before.
#pragma once

#include <filesystem>
#include <string>

#include "Tests/Pictures/PictureReport.h"

namespace lanternfold {

/// Where blessed pictures are, and where to tell of those that differ.
struct GoldenPictures {
  std::filesystem::path folder;
  PictureReport report;
  /// Write what is drawn instead of comparing it.
  bool isUpdating = false;

  /// Those of this tree, updated when LANTERNFOLD_GOLDEN_UPDATE=1 is in the environment.
  [[nodiscard]] static GoldenPictures ofThisTree();
};

/// Fails the running test when `png` does not look as `name`.png of the folder does
/// (Tests/Pictures/PictureDifference.h), and shows both in the report. When updating it writes that
/// file instead: look at it before you commit it.
void expectGoldenPicture(const GoldenPictures& pictures, const std::string& name,
                         const std::string& png);

}  // namespace lanternfold
