// What to say of characters that no installed typeface has, which are drawn as boxes.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace lanternfold {

/// The characters of which one sentence speaks, as part of it: "the script thai", "emoji".
[[nodiscard]] std::string characterGroup(char32_t character);

/// The Debian package with a typeface for `character`; empty when there can be none, since its
/// meaning is anybody's to choose or it has none.
[[nodiscard]] std::string_view packageWithCharacter(char32_t character);

/// Tells of each group once. Names no text: it may be the name of a network.
class MissingGlyphs {
 public:
  explicit MissingGlyphs(std::function<void(std::string_view)> report);

  void missCharacter(char32_t character);
  /// There is no typeface at all.
  void missEverything();

 private:
  std::function<void(std::string_view)> report_;
  std::set<std::string> told_;
};

}  // namespace lanternfold
