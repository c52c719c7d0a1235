#include <gtest/gtest.h>

#include "EchoService/ListenAddress.h"

namespace lanternfold {
namespace {

TEST(ListenAddress, ComesBackAsTheSameText) {
  for (const char* text : {"127.0.0.1:8080", "0.0.0.0:0", "[::]:80", "[2001:db8::1]:65535"}) {
    const auto parsed = parseListenAddress(text);
    ASSERT_TRUE(parsed.has_value()) << text;
    EXPECT_EQ(listenAddressText(*parsed), text);
  }
}

TEST(ListenAddress, NothingElseIsOne) {
  for (const char* text : {"",
                           ":",
                           "8080",
                           ":8080",
                           "localhost:8080",
                           "127.0.0.1",
                           "127.0.0.1:",
                           "127.0.0.1:-1",
                           "127.0.0.1:65536",
                           "127.0.0.1:80x",
                           "127.0.0.1: 80",
                           "127.0.0.1:+80",
                           "::1:80",
                           "[::1]",
                           "[::1]:",
                           "[::1:80",
                           "::1]:80",
                           "[127.0.0.1]:80",
                           "[fe80::1%eth0]:80",
                           "[]:80",
                           "[:80",
                           "*:80",
                           "http://127.0.0.1:80"}) {
    EXPECT_EQ(parseListenAddress(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace lanternfold
