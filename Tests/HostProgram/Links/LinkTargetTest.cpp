// Where links of cards lead.
#include <gtest/gtest.h>

#include "HostProgram/Links/LinkTarget.h"

namespace lanternfold {
namespace {

constexpr const char* bandwidthLink = "net.quernaple.LanternfoldX://bandwidth-monitor?mini=1";

TEST(LinkTargetTest, APageIsTheBrowsers) {
  EXPECT_EQ(linkTarget("https://example.com/page", false), LinkTarget::system);
}

TEST(LinkTargetTest, AMainApplicationHandlesTheProductsOwnLinks) {
  EXPECT_EQ(linkTarget(bandwidthLink, true), LinkTarget::system);
}

TEST(LinkTargetTest, WithoutOneTheHostShowsTheBandwidthMonitorItself) {
  EXPECT_EQ(linkTarget(bandwidthLink, false), LinkTarget::ownBandwidthMonitor);
  EXPECT_EQ(linkTarget("net.quernaple.LanternfoldX://elsewhere", false), LinkTarget::nothing);
}

/// A copy of this program's desktop file under another name once had the link start the program
/// again and again.
TEST(LinkTargetTest, AHandlerThatStartsThisProgramIsThisProgram) {
  const std::filesystem::path own = "/usr/bin/lanternfold-widget-host";
  EXPECT_TRUE(isThisProgram({.desktopFile = std::string(ownDesktopFile)}, own));
  EXPECT_TRUE(isThisProgram({.desktopFile = "copy.desktop", .program = own}, own));
  EXPECT_FALSE(isThisProgram({.desktopFile = "other.desktop", .program = "/usr/bin/other"}, own));
  EXPECT_FALSE(isThisProgram({.desktopFile = "other.desktop"}, {}));
}

TEST(LinkTargetTest, WhatComesFromOutsideNeverGoesOutAgain) {
  EXPECT_EQ(linkTargetFromOutside(bandwidthLink), LinkTarget::ownBandwidthMonitor);
  for (const char* url : {"https://example.com/page", "net.quernaple.LanternfoldX://elsewhere",
                          "file:///etc/passwd", ""}) {
    EXPECT_EQ(linkTargetFromOutside(url), LinkTarget::nothing) << url;
  }
}

TEST(LinkTargetTest, WhateverElseAnExtensionWantsOpenedIsNot) {
  for (const char* url : {"javascript:alert(1)", "file:///etc/passwd", "http://example.com", "",
                          "mailto:someone@example.com"}) {
    EXPECT_EQ(linkTarget(url, true), LinkTarget::nothing) << url;
  }
}

}  // namespace
}  // namespace lanternfold
