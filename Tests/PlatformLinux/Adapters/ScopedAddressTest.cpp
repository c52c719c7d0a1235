#include "PlatformLinux/Adapters/ScopedAddress.h"

namespace lanternfold {
namespace {

TEST(ScopedAddress, TheInterfaceIsWhatFollowsThePercentSign) {
  EXPECT_EQ(interfaceOfScopedAddress("127.0.0.1%eth0"), "eth0");
  EXPECT_EQ(interfaceOfScopedAddress("10.20.30.255%wlp0s20f3"), "wlp0s20f3");
  EXPECT_EQ(interfaceOfScopedAddress("127.0.0.1%a-b.5:1"), "a-b.5:1");
  EXPECT_EQ(interfaceOfScopedAddress("127.0.0.1%fifteen-bytes-x"), "fifteen-bytes-x");
}

TEST(ScopedAddress, AnythingElseIsNone) {
  const std::vector<std::string> texts = {"",
                                          "%",
                                          "%eth0",
                                          "127.0.0.1",
                                          "127.0.0.1%",
                                          "127.0.0%eth0",
                                          "127.0.0.256%eth0",
                                          "127.0.0.1 %eth0",
                                          " 127.0.0.1%eth0",
                                          "0x7f.0.0.1%eth0",
                                          "127.0.0.01%eth0",
                                          "::1%eth0",
                                          "127.0.0.1%eth0%eth1",
                                          "127.0.0.1%eth 0",
                                          "127.0.0.1%../net",
                                          "127.0.0.1%.",
                                          "127.0.0.1%..",
                                          "127.0.0.1%sixteen-bytes-xy",
                                          "localhost%eth0",
                                          std::string("127.0.0.1\0x%eth0", 16),
                                          std::string("127.0.0.1%eth0\0", 15)};
  for (const std::string& text : texts) {
    EXPECT_EQ(interfaceOfScopedAddress(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace lanternfold
