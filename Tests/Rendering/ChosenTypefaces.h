// Makes the typefaces of chosen folders the only ones, while it stands. A renderer that is made
// meanwhile sees them, and no later.
#pragma once

#include <string>
#include <vector>

namespace lanternfold {

inline constexpr const char* interFolder = "/usr/share/fonts/opentype/inter";
inline constexpr const char* dejaVuFolder = "/usr/share/fonts/truetype/dejavu";
inline constexpr const char* emojiFolder = "/usr/share/fonts/truetype/noto";
inline constexpr const char* chineseFolder = "/usr/share/fonts/truetype/wqy";
inline constexpr const char* thaiFolder = "/usr/share/fonts/truetype/tlwg";
inline constexpr const char* devanagariFolder = "/usr/share/fonts/truetype/lohit-devanagari";

/// Typefaces of every script that the tests show.
[[nodiscard]] std::vector<std::string> manyFolders();

class ChosenTypefaces {
 public:
  /// Fails the running test when a folder has none.
  explicit ChosenTypefaces(const std::vector<std::string>& folders);
  ~ChosenTypefaces();
  ChosenTypefaces(const ChosenTypefaces&) = delete;
  ChosenTypefaces& operator=(const ChosenTypefaces&) = delete;

 private:
  void* before_;
};

}  // namespace lanternfold
