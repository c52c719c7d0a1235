// One HTML page on every golden picture that differs: old, new and difference side by side.
//
// Made by: the tests that compare pictures, each in a process of its own. Read by: a person, in a
// browser.
#pragma once

#include <filesystem>
#include <string>

namespace lanternfold {

/// A picture that differs from the blessed one.
struct PictureFinding {
  std::string name;      ///< that of the picture's file without its ending
  std::string sentence;  ///< how they differ
  std::string blessed;   ///< a PNG file's bytes; empty when there is none yet
  std::string actual;
  std::string difference;  ///< empty where nothing can be compared
};

/// A folder with a folder for each finding, and `index.html` over all of them.
class PictureReport {
 public:
  explicit PictureReport(std::filesystem::path folder);

  /// In the place of an older one of that name.
  void add(const PictureFinding& finding) const;
  /// The picture is as blessed.
  void remove(const std::string& name) const;

  [[nodiscard]] std::filesystem::path page() const { return folder_ / "index.html"; }

 private:
  /// Of what stands in the folder, so that processes side by side need not know of each other:
  /// whoever is the last sees all. Without findings there is no page.
  void writePage() const;

  std::filesystem::path folder_;
};

}  // namespace lanternfold
