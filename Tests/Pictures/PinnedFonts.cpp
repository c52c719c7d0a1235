#include "Tests/Pictures/PinnedFonts.h"

#include <cstdlib>
#include <fstream>
#include <unistd.h>

#include <gtest/gtest.h>

namespace lanternfold {
namespace {

namespace fs = std::filesystem;

/// The system's own rule that makes colour glyphs, which are bitmaps of one size, as large as the
/// letters beside them.
constexpr const char* glyphScaling = "/usr/share/fontconfig/conf.avail/10-scale-bitmap-fonts.conf";

/// Has every picture of this program drawn with the pinned fonts, in one language and time zone,
/// before anything has looked for a font.
class PinnedSurroundings final : public testing::Environment {
 public:
  void SetUp() override {
    for (const PinnedFont& font : pinnedFonts()) {
      ASSERT_TRUE(fs::exists(font.file)) << "install " << font.package << ": Scripts/setup test";
    }
    const fs::path folder = fs::path(LANTERNFOLD_BINARY_DIR) / "golden-fonts";
    fs::create_directories(folder);
    // Other processes of this program may be about to read it.
    const fs::path written = folder / ("fonts.conf." + std::to_string(::getpid()));
    std::ofstream(written) << fontConfiguration(folder / "cache");
    fs::rename(written, folder / "fonts.conf");
    ::setenv("FONTCONFIG_FILE", (folder / "fonts.conf").c_str(), 1);
    ::setenv("LC_ALL", "C.UTF-8", 1);
    ::unsetenv("LANGUAGE");
    ::setenv("TZ", "UTC", 1);
  }
};

const testing::Environment* const pinned =
    testing::AddGlobalTestEnvironment(std::make_unique<PinnedSurroundings>().release());

}  // namespace

const std::vector<PinnedFont>& pinnedFonts() {
  static const std::vector<PinnedFont> fonts = {
      {"fonts-inter", "/usr/share/fonts/opentype/inter/Inter-Regular.otf"},
      {"fonts-inter", "/usr/share/fonts/opentype/inter/Inter-Bold.otf"},
      {"fonts-dejavu-core", "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"},
      {"fonts-dejavu-core", "/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf"},
      {"fonts-noto-color-emoji", "/usr/share/fonts/truetype/noto/NotoColorEmoji.ttf"}};
  return fonts;
}

std::string fontConfiguration(const fs::path& cacheFolder) {
  std::string folders;
  std::string accepted;
  for (const PinnedFont& font : pinnedFonts()) {
    folders += "  <dir>" + fs::path(font.file).parent_path().string() + "</dir>\n";
    accepted += "      <glob>" + std::string(font.file) + "</glob>\n";
  }
  return "<?xml version=\"1.0\"?>\n<!DOCTYPE fontconfig SYSTEM \"fonts.dtd\">\n<fontconfig>\n" +
         folders + "  <cachedir>" + cacheFolder.string() + "</cachedir>\n  <include>" +
         glyphScaling +
         "</include>\n  <selectfont>\n    <rejectfont>\n      <glob>*</glob>\n    </rejectfont>\n"
         "    <acceptfont>\n" +
         accepted + "    </acceptfont>\n  </selectfont>\n</fontconfig>\n";
}

}  // namespace lanternfold
