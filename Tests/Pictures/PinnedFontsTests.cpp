// That pictures are drawn with the pinned typefaces alone.
#include <algorithm>
#include <set>

#include <gtest/gtest.h>
#include <pango/pangocairo.h>

#include "Tests/Pictures/PinnedFonts.h"

namespace lanternfold {
namespace {

/// Of every typeface that a text may be set in.
std::set<std::string> familyNames() {
  PangoFontFamily** families = nullptr;
  int count = 0;
  pango_font_map_list_families(pango_cairo_font_map_get_default(), &families, &count);
  std::set<std::string> names;
  for (int index = 0; index < count; ++index) {
    names.emplace(pango_font_family_get_name(families[index]));
  }
  g_free(families);
  return names;
}

TEST(PinnedFonts, AreTheOnlyOnes) {
  std::set<std::string> names = familyNames();
  // Names that stand for any typeface are offered whatever is installed.
  for (const char* alias : {"Sans", "Serif", "Monospace", "System-ui"}) names.erase(alias);
  EXPECT_EQ(names, (std::set<std::string>{"DejaVu Sans", "Inter", "Noto Color Emoji"}));
}

}  // namespace
}  // namespace lanternfold
