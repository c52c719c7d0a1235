// What every interface naming does, run against the library's literal rule and the Linux side.
#include "NetBase/LiteralInterfaceNaming.h"
#include "PlatformLinux/System/LinuxInterfaceNaming.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"

namespace lanternfold {
namespace {

template <typename Naming>
class InterfaceNamingContract : public testing::Test {
 protected:
  [[nodiscard]] bool takes(std::string_view prefix, std::string_view name) const {
    return naming_.matcher(prefix)(name);
  }

  Naming naming_;
};

using Namings = testing::Types<LiteralInterfaceNaming, LinuxInterfaceNaming>;

class NamingNames {
 public:
  template <typename Naming>
  static std::string GetName(int) {
    return std::is_same_v<Naming, LinuxInterfaceNaming> ? "Linux" : "Literal";
  }
};

TYPED_TEST_SUITE(InterfaceNamingContract, Namings, NamingNames);

TYPED_TEST(InterfaceNamingContract, ANameThatBeginsWithThePrefixAlwaysBelongs) {
  for (const char* name : {"en", "en0", "en01", "enp3s0", "enough"}) {
    EXPECT_TRUE(this->takes("en", name)) << name;
  }
  EXPECT_TRUE(this->takes("pdp_ip", "pdp_ip0"));
  EXPECT_TRUE(this->takes("en0", "en01"));
}

TYPED_TEST(InterfaceNamingContract, AnEmptyPrefixTakesEveryName) {
  EXPECT_TRUE(this->takes("", "lo"));
  EXPECT_TRUE(this->takes("", ""));
}

TYPED_TEST(InterfaceNamingContract, AnotherPrefixIsLiteral) {
  EXPECT_TRUE(this->takes("lo", "lo0"));
  EXPECT_FALSE(this->takes("lo", "eth0"));
  EXPECT_FALSE(this->takes("wl", "eth0"));
  EXPECT_FALSE(this->takes("EN", "en0"));
}

TYPED_TEST(InterfaceNamingContract, ANameThatNoLinkHasIsNotWidenedTo) {
  EXPECT_FALSE(this->takes("en", "no-such-link"));
  EXPECT_FALSE(this->takes("en", ""));
  EXPECT_FALSE(this->takes("en", "lo"));
  EXPECT_FALSE(this->takes("en", "En0"));
}

TYPED_TEST(InterfaceNamingContract, AMatcherOutlivesItsNamingAndItsPrefix) {
  auto naming = std::make_unique<TypeParam>();
  auto prefix = std::make_unique<std::string>("en");
  const auto matches = naming->matcher(*prefix);
  naming.reset();
  prefix.reset();
  EXPECT_TRUE(matches("en0"));
  EXPECT_FALSE(matches("lo"));
}

}  // namespace
}  // namespace lanternfold
