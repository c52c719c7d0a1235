// What every resolver configuration does, run against the C library's resolver and the fake.
#include <arpa/inet.h>
#include <sys/resource.h>

#include "PlatformLinux/System/LinuxResolverConfiguration.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"
#include "Tests/PlatformLinux/PrivateEtc.h"
#include "Tests/Support/FakeResolverConfiguration.h"

namespace lanternfold {
namespace {

/// The address of a text, IPv6 when it has a colon.
SocketAddress addressOf(const std::string& text) {
  IPv4Bytes bytes4{};
  IPv6Bytes bytes6{};
  if (text.find(':') == text.npos) {
    EXPECT_EQ(inet_pton(AF_INET, text.c_str(), bytes4.data()), 1) << text;
    return bytes4;
  }
  EXPECT_EQ(inet_pton(AF_INET6, text.c_str(), bytes6.data()), 1) << text;
  return bytes6;
}

using Servers = std::vector<std::string>;

class LinuxResolverWorld {
 public:
  void open() {
    ENTER_NETWORK_NAMESPACE(namespace_);
    ASSERT_TRUE(PrivateEtc::mount());
  }
  void configure(const Servers& servers) {
    std::string text = "search example.net\n";
    for (const std::string& server : servers) text += "nameserver " + server + "\n";
    PrivateEtc::write("resolv.conf", text);
  }
  /// The answer of a resolver that cannot read its configuration.
  [[nodiscard]] std::optional<std::vector<SocketAddress>> answerWhenBroken() {
    configure({"192.0.2.99"});
    rlimit usual{};
    EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &usual), 0);
    const rlimit none{.rlim_cur = 0, .rlim_max = usual.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    auto answer = resolver_.dnsServers();
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &usual), 0);
    return answer;
  }
  [[nodiscard]] const ResolverConfiguration& resolver() const { return resolver_; }

 private:
  std::unique_ptr<NetworkNamespace> namespace_;
  LinuxResolverConfiguration resolver_;
};

class FakeResolverWorld {
 public:
  void open() {}
  void configure(const Servers& servers) {
    std::vector<SocketAddress> addresses;
    for (const std::string& server : servers) addresses.push_back(addressOf(server));
    resolver_.setServers(addresses);
  }
  [[nodiscard]] std::optional<std::vector<SocketAddress>> answerWhenBroken() {
    resolver_.setServers(std::nullopt);
    return resolver_.dnsServers();
  }
  [[nodiscard]] const ResolverConfiguration& resolver() const { return resolver_; }

 private:
  FakeResolverConfiguration resolver_;
};

template <typename World>
class ResolverConfigurationContract : public testing::Test {
 protected:
  void SetUp() override { world_.open(); }

  void expectServers(const Servers& expected) {
    std::vector<SocketAddress> addresses;
    for (const std::string& server : expected) addresses.push_back(addressOf(server));
    EXPECT_EQ(world_.resolver().dnsServers(), addresses);
  }

  World world_;
};

using Worlds = testing::Types<LinuxResolverWorld, FakeResolverWorld>;

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    return std::is_same_v<World, LinuxResolverWorld> ? "Linux" : "Fake";
  }
};

TYPED_TEST_SUITE(ResolverConfigurationContract, Worlds, WorldNames);

TYPED_TEST(ResolverConfigurationContract, GivesTheServersInResolverOrder) {
  this->world_.configure({"192.0.2.53", "198.51.100.53"});
  this->expectServers({"192.0.2.53", "198.51.100.53"});
}

TYPED_TEST(ResolverConfigurationContract, BothFamiliesKeepTheirPlaces) {
  this->world_.configure({"2001:db8::53", "192.0.2.53", "2001:db8::54"});
  this->expectServers({"2001:db8::53", "192.0.2.53", "2001:db8::54"});
  this->world_.configure({"192.0.2.53", "2001:db8::53"});
  this->expectServers({"192.0.2.53", "2001:db8::53"});
}

TYPED_TEST(ResolverConfigurationContract, EveryCallReadsAfresh) {
  this->world_.configure({"192.0.2.53"});
  this->expectServers({"192.0.2.53"});
  this->world_.configure({"192.0.2.54"});
  this->expectServers({"192.0.2.54"});
}

TYPED_TEST(ResolverConfigurationContract, WithoutAServerTheListIsEmpty) {
  this->world_.configure({});
  this->expectServers({});
}

TYPED_TEST(ResolverConfigurationContract, ALocalServerThatIsConfiguredIsListed) {
  this->world_.configure({"127.0.0.1"});
  this->expectServers({"127.0.0.1"});
}

TYPED_TEST(ResolverConfigurationContract, AResolverThatCannotBeInitialisedGivesNone) {
  EXPECT_EQ(this->world_.answerWhenBroken(), std::nullopt);
}

using LinuxResolver = ResolverConfigurationContract<LinuxResolverWorld>;

TEST_F(LinuxResolver, AMissingFileIsAnEmptyList) { expectServers({}); }

TEST_F(LinuxResolver, ThreeServersAreKept) {
  world_.configure({"192.0.2.1", "192.0.2.2", "192.0.2.3", "192.0.2.4"});
  expectServers({"192.0.2.1", "192.0.2.2", "192.0.2.3"});
}

TEST_F(LinuxResolver, AServerOfNoReadableAddressIsLeftOut) {
  world_.configure({"not-an-address", "192.0.2.1"});
  expectServers({"192.0.2.1"});
}

TEST_F(LinuxResolver, AScopedServerIsGivenWithoutItsScope) {
  world_.configure({"fe80::1%lo"});
  expectServers({"fe80::1"});
}

}  // namespace
}  // namespace lanternfold
