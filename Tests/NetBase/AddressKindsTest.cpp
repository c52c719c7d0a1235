// The two small enumerations and their raw values.
#include <gtest/gtest.h>

#include "NetBase/AddressType.h"
#include "NetBase/IPVersion.h"

namespace lanternfold {
namespace {

TEST(IPVersion, RawValuesAreTheVersionNumbers) {
  EXPECT_EQ(static_cast<std::int64_t>(IPVersion::ipv4), 4);
  EXPECT_EQ(static_cast<std::int64_t>(IPVersion::ipv6), 6);
  EXPECT_EQ(ipVersion(4), IPVersion::ipv4);
  EXPECT_EQ(ipVersion(6), IPVersion::ipv6);
}

TEST(IPVersion, RawValue5IsNone) {
  EXPECT_EQ(ipVersion(5), std::nullopt);
  EXPECT_EQ(ipVersion(0), std::nullopt);
  EXPECT_EQ(ipVersion(-4), std::nullopt);
}

TEST(AddressType, RawValuesReadBack) {
  for (const auto type : {AddressType::ipv4, AddressType::ipv6, AddressType::hostname}) {
    EXPECT_EQ(addressType(rawValue(type)), type);
  }
  EXPECT_EQ(rawValue(AddressType::ipv4), "ipv4");
  EXPECT_EQ(rawValue(AddressType::ipv6), "ipv6");
  EXPECT_EQ(rawValue(AddressType::hostname), "hostname");
}

TEST(AddressType, RawValueIPv4InUpperCaseIsNone) {
  EXPECT_EQ(addressType("IPv4"), std::nullopt);
  EXPECT_EQ(addressType("ipv4 "), std::nullopt);
  EXPECT_EQ(addressType(""), std::nullopt);
}

}  // namespace
}  // namespace lanternfold
