// What the link to the bandwidth monitor asks for.
#include <gtest/gtest.h>

#include "HostProgram/Links/BandwidthLink.h"

namespace lanternfold {
namespace {

TEST(BandwidthLinkTest, TheMonitorIsMiniWhenTheQuerySaysSo) {
  const std::string link = "net.quernaple.LanternfoldX://bandwidth-monitor";
  EXPECT_TRUE(asksForMiniMonitor(link + "?mini=1"));
  EXPECT_TRUE(asksForMiniMonitor(link + "?adapter=eth0&mini=1#top"));
  for (const char* query : {"", "?", "?mini=0", "?mini", "?minimum=1", "?xmini=1", "#?mini=1"}) {
    EXPECT_FALSE(asksForMiniMonitor(link + query)) << query;
  }
}

}  // namespace
}  // namespace lanternfold
