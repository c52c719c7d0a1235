// Where links of cards lead.
#include <gtest/gtest.h>

#include "HostProgram/Links/LinkTarget.h"

namespace lanternfold {
namespace {

constexpr const char* bandwidthLink = "net.quernaple.LanternfoldX://bandwidth-monitor?mini=1";

TEST(LinkTargetTest, APageIsTheBrowsers) {
  EXPECT_EQ(linkTarget("https://example.com/page", ""), LinkTarget::system);
}

TEST(LinkTargetTest, AMainApplicationHandlesTheProductsOwnLinks) {
  EXPECT_EQ(linkTarget(bandwidthLink, "net.quernaple.LanternfoldX.desktop"), LinkTarget::system);
}

TEST(LinkTargetTest, WithoutOneTheHostShowsTheBandwidthMonitorItself) {
  EXPECT_EQ(linkTarget(bandwidthLink, ""), LinkTarget::ownBandwidthMonitor);
  EXPECT_EQ(linkTarget(bandwidthLink, ownDesktopFile), LinkTarget::ownBandwidthMonitor);
  EXPECT_EQ(linkTarget("net.quernaple.LanternfoldX://elsewhere", ""), LinkTarget::nothing);
}

TEST(LinkTargetTest, WhateverElseAnExtensionWantsOpenedIsNot) {
  for (const char* url : {"javascript:alert(1)", "file:///etc/passwd", "http://example.com", "",
                          "mailto:someone@example.com"}) {
    EXPECT_EQ(linkTarget(url, "net.quernaple.LanternfoldX.desktop"), LinkTarget::nothing) << url;
  }
}

}  // namespace
}  // namespace lanternfold
