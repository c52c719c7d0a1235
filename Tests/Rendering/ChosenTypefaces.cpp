#include "Tests/Rendering/ChosenTypefaces.h"

#include <filesystem>
#include <fontconfig/fontconfig.h>

#include <gtest/gtest.h>

namespace lanternfold {
namespace {

int countOf(FcConfig* configuration) {
  const FcFontSet* const fonts = FcConfigGetFonts(configuration, FcSetSystem);
  return fonts == nullptr ? 0 : fonts->nfont;
}

}  // namespace

std::vector<std::string> manyFolders() {
  return {interFolder, dejaVuFolder, emojiFolder, chineseFolder, thaiFolder, devanagariFolder};
}

ChosenTypefaces::ChosenTypefaces(const std::vector<std::string>& folders)
    : before_(FcConfigReference(nullptr)) {
  std::string xml = "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"fonts.dtd\"><fontconfig>";
  for (const std::string& folder : folders) xml += "<dir>" + folder + "</dir>";
  // Without this rule emoji, which are bitmaps, keep the size in which they are stored.
  xml += "<include>/usr/share/fontconfig/conf.avail/10-scale-bitmap-fonts.conf</include>";
  xml += "<cachedir>" + testing::TempDir() + "lanternfold-fontconfig</cachedir></fontconfig>";
  FcConfig* const chosen = FcConfigCreate();
  const auto* const bytes = reinterpret_cast<const FcChar8*>(xml.c_str());
  EXPECT_EQ(FcConfigParseAndLoadFromMemory(chosen, bytes, FcTrue), FcTrue);
  EXPECT_EQ(FcConfigBuildFonts(chosen), FcTrue);
  for (const std::string& folder : folders) {
    EXPECT_TRUE(std::filesystem::is_directory(folder)) << folder << ": see Scripts/packages.txt";
  }
  EXPECT_GE(countOf(chosen), static_cast<int>(folders.size()));
  FcConfigSetCurrent(chosen);
}

ChosenTypefaces::~ChosenTypefaces() {
  auto* const before = static_cast<FcConfig*>(before_);
  FcConfigSetCurrent(before);
  FcConfigDestroy(before);
}

}  // namespace lanternfold
