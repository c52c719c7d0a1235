// Whether cards are light or dark.
#include <gtest/gtest.h>

#include "HostProgram/Display/SchemeChoice.h"

namespace lanternfold {
namespace {

TEST(SchemeChoiceTest, ThePreferenceOfTheDesktopCountsMost) {
  EXPECT_EQ(chosenScheme(PreferredColourScheme::light, {.name = "Adwaita-dark"}),
            ColourScheme::light);
  EXPECT_EQ(chosenScheme(PreferredColourScheme::dark, {.name = "Adwaita"}), ColourScheme::dark);
}

TEST(SchemeChoiceTest, WithoutOneTheThemeSaysIt) {
  const auto without = PreferredColourScheme::noPreference;
  EXPECT_EQ(chosenScheme(without, {}), ColourScheme::light);
  EXPECT_EQ(chosenScheme(without, {.name = "Adwaita", .prefersDark = true}), ColourScheme::dark);
  for (const char* name : {"Adwaita-dark", "Arc-Dark", "Adwaita:dark"}) {
    EXPECT_EQ(chosenScheme(without, {.name = name}), ColourScheme::dark) << name;
  }
  for (const char* name : {"Adwaita", "Darkroom", ""}) {
    EXPECT_EQ(chosenScheme(without, {.name = name}), ColourScheme::light) << name;
  }
}

}  // namespace
}  // namespace lanternfold
