#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Rendering/MissingGlyphs.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;

struct Lines {
  std::vector<std::string> lines;
  std::function<void(std::string_view)> report() {
    return [this](std::string_view line) { lines.emplace_back(line); };
  }
};

TEST(MissingGlyphs, NameTheScriptACharacterAndThePackage) {
  Lines told;
  MissingGlyphs missing(told.report());
  missing.missCharacter(U'\u0E01');
  EXPECT_THAT(told.lines,
              ElementsAre("no typeface has the letters of the script thai such as U+0E01: boxes "
                          "stand in for them; install the package fonts-noto-core"));
}

TEST(MissingGlyphs, AreToldOnceAScript) {
  Lines told;
  MissingGlyphs missing(told.report());
  for (const char32_t each : U"\u0E01\u0E02\u0E03\u0905\u0906\U0001F680\U0001F4F6") {
    if (each != 0) missing.missCharacter(each);
  }
  EXPECT_EQ(told.lines.size(), 3U);
}

TEST(MissingGlyphs, HaveThePackageOfTheirKind) {
  EXPECT_EQ(packageWithCharacter(U'\u0627'), "fonts-noto-core");
  EXPECT_EQ(packageWithCharacter(U'\u7DB2'), "fonts-noto-cjk");
  EXPECT_EQ(packageWithCharacter(U'\u30CD'), "fonts-noto-cjk");
  EXPECT_EQ(packageWithCharacter(U'\uD55C'), "fonts-noto-cjk");
  EXPECT_EQ(packageWithCharacter(U'\U0001F680'), "fonts-noto-color-emoji");
  EXPECT_EQ(packageWithCharacter(U'\u2602'), "fonts-noto-color-emoji");
  EXPECT_EQ(packageWithCharacter(U'\uE000'), "");
}

TEST(MissingGlyphs, WithoutAMeaningCannotBeInstalled) {
  Lines told;
  MissingGlyphs missing(told.report());
  missing.missCharacter(U'\uE000');
  EXPECT_THAT(told.lines, ElementsAre("no typeface has the characters without a meaning of their "
                                      "own such as U+E000: boxes stand in for them"));
}

TEST(MissingGlyphs, OfAMachineWithoutTypefacesAreToldInALine) {
  Lines told;
  MissingGlyphs missing(told.report());
  missing.missEverything();
  missing.missEverything();
  EXPECT_THAT(told.lines, ElementsAre("no typeface is installed: bars stand in for texts; install "
                                      "a package such as fonts-inter"));
}

}  // namespace
}  // namespace lanternfold
