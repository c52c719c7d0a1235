// What every host look-up does, run against the C library's and the fake.
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "PlatformLinux/System/LinuxHostLookup.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"
#include "Tests/PlatformLinux/PrivateEtc.h"
#include "Tests/Support/FakeHostLookup.h"

namespace lanternfold {
namespace {

constexpr IPv4Bytes ipv4{192, 0, 2, 7};
constexpr IPv4Bytes otherIPv4{192, 0, 2, 8};
constexpr IPv6Bytes ipv6{0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 7};

/// Its hosts stand in a file, and there is no network on which a server could be asked.
class LinuxHostWorld {
 public:
  void open() {
    ENTER_NETWORK_NAMESPACE(namespace_);
    ASSERT_TRUE(PrivateEtc::mount());
    PrivateEtc::write("nsswitch.conf", "hosts: files\n");
    PrivateEtc::write("resolv.conf", "");
    PrivateEtc::write("host.conf", "multi on\n");
    PrivateEtc::write("hosts",
                      "192.0.2.7 both old old.example\n192.0.2.8 both\n2001:db8::7 both new\n"
                      "192.0.2.7 xn--mnchen-3ya.example\n");
  }
  [[nodiscard]] const HostLookup& lookup() const { return lookup_; }

 private:
  std::unique_ptr<NetworkNamespace> namespace_;
  LinuxHostLookup lookup_;
};

class FakeHostWorld {
 public:
  void open() {
    for (const char* host : {"both", "old", "old.example"}) lookup_.addAddress(host, ipv4);
    lookup_.addAddress("both", otherIPv4);
    for (const char* host : {"both", "new"}) lookup_.addAddress(host, ipv6);
  }
  [[nodiscard]] const HostLookup& lookup() const { return lookup_; }

 private:
  FakeHostLookup lookup_;
};

template <typename World>
class HostLookupContract : public testing::Test {
 protected:
  void SetUp() override { world_.open(); }
  World world_;
};

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    return std::is_same_v<World, LinuxHostWorld> ? "Linux" : "Fake";
  }
};

using Worlds = testing::Types<LinuxHostWorld, FakeHostWorld>;
TYPED_TEST_SUITE(HostLookupContract, Worlds, WorldNames);

TYPED_TEST(HostLookupContract, GivesTheFirstAddressOfAFamily) {
  const HostLookup& lookup = this->world_.lookup();
  EXPECT_EQ(lookup.ipv4Address("both"), ipv4);
  EXPECT_EQ(lookup.ipv6Address("both"), ipv6);
  EXPECT_EQ(lookup.ipv4Address("old.example"), ipv4);
}

TYPED_TEST(HostLookupContract, GivesNoneOfAFamilyThatTheHostDoesNotHave) {
  const HostLookup& lookup = this->world_.lookup();
  EXPECT_EQ(lookup.ipv6Address("old"), std::nullopt);
  EXPECT_EQ(lookup.ipv4Address("new"), std::nullopt);
}

TYPED_TEST(HostLookupContract, GivesNoneOfAnUnknownHost) {
  const HostLookup& lookup = this->world_.lookup();
  for (const std::string& host :
       {std::string("nowhere"), std::string(), std::string("."), std::string("old\0", 4),
        std::string(1'000'000, 'a'), std::string("\xFF")}) {
    EXPECT_EQ(lookup.ipv4Address(host), std::nullopt) << host.substr(0, 20);
    EXPECT_EQ(lookup.ipv6Address(host), std::nullopt) << host.substr(0, 20);
  }
}

class LinuxHostLookupInNamespace : public testing::Test {
 protected:
  void SetUp() override { world_.open(); }
  LinuxHostWorld world_;
};

TEST_F(LinuxHostLookupInNamespace, TakesAnAddressForItself) {
  EXPECT_EQ(world_.lookup().ipv4Address("192.0.2.200"), (IPv4Bytes{192, 0, 2, 200}));
  EXPECT_EQ(world_.lookup().ipv6Address("2001:db8::7"), ipv6);
  EXPECT_EQ(world_.lookup().ipv6Address("192.0.2.200"), std::nullopt);
  EXPECT_EQ(world_.lookup().ipv4Address("2001:db8::7"), std::nullopt);
}

TEST_F(LinuxHostLookupInNamespace, LooksUpInternationalNamesAsDnsCarriesThem) {
  EXPECT_EQ(world_.lookup().ipv4Address("m\u00FCnchen.example"), ipv4);
  EXPECT_EQ(world_.lookup().ipv4Address("M\u00DCNCHEN.example"), ipv4);
  EXPECT_EQ(world_.lookup().ipv4Address("xn--mnchen-3ya.example"), ipv4);
}

std::string hostWithAliases(int count) {
  std::string line = "192.0.2.7 many";
  for (int number = 0; number < count; ++number) line += " alias-" + std::to_string(number);
  return line + "\n";
}

// Its answer does not fit the first buffer that the C library is given.
TEST_F(LinuxHostLookupInNamespace, HasRoomForAHostWithManyNames) {
  PrivateEtc::write("hosts", hostWithAliases(2000));
  EXPECT_EQ(world_.lookup().ipv4Address("many"), ipv4);
  EXPECT_EQ(world_.lookup().ipv4Address("alias-1999"), ipv4);
}

// The C library's answer holds the names, and a pointer to each.
TEST_F(LinuxHostLookupInNamespace, GivesNoneOfAHostWithMoreThanAMebibyteOfNames) {
  PrivateEtc::write("hosts", hostWithAliases(30'000));
  EXPECT_EQ(world_.lookup().ipv4Address("many"), ipv4);
  PrivateEtc::write("hosts", hostWithAliases(80'000));
  EXPECT_EQ(world_.lookup().ipv4Address("many"), std::nullopt);
}

TEST_F(LinuxHostLookupInNamespace, LooksUpOnManyThreadsAtOnce) {
  constexpr int lookups = 300;
  std::atomic<int> found = 0;
  const auto lookUp = [this, &found] {
    for (int number = 0; number < lookups; ++number) {
      const HostLookup& lookup = world_.lookup();
      if (lookup.ipv4Address("both") == ipv4 && lookup.ipv6Address("new") == ipv6 &&
          lookup.ipv4Address("192.0.2.8") == otherIPv4 && !lookup.ipv4Address("nowhere")) {
        ++found;
      }
    }
  };
  std::vector<std::thread> threads;
  for (int number = 0; number < 16; ++number) threads.emplace_back(lookUp);
  for (std::thread& each : threads) each.join();
  EXPECT_EQ(found, 16 * lookups);
}

}  // namespace
}  // namespace lanternfold
