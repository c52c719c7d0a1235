// What every counter reader keeps to: the production one in a namespace, the 32-bit one over a
// kernel of state, and the fake.
#include <gtest/gtest.h>

#include "NetworkMonitor/Metrics/BsdConnectionMetricsReader.h"
#include "PlatformLinux/System/LinuxConnectionMetricsReader.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"
#include "Tests/PlatformLinux/System/NamespaceTools.h"
#include "Tests/Support/FakeConnectionMetricsReader.h"
#include "Tests/Support/FakeNetworkKernel.h"

namespace lanternfold::test {
namespace {

// Every world has "en0" with an MTU of 1400, which no packet has passed, and can lose it.

class LinuxReaderWorld {
 public:
  void open() {
    ENTER_NETWORK_NAMESPACE(network_);
    ip("link add en0 mtu 1400 type veth peer name en5\n");
  }
  [[nodiscard]] ConnectionMetricsReader& reader() { return reader_; }
  void removeEn0() { ip("link del en0\n"); }
  static constexpr bool isCapped = false;

 private:
  std::unique_ptr<NetworkNamespace> network_;
  LinuxConnectionMetricsReader reader_;
};

class BsdReaderWorld {
 public:
  void open() { kernel_.addLink(LinkRecord{.name = "en0", .type = 6, .mtu = 1400}); }
  [[nodiscard]] ConnectionMetricsReader& reader() { return reader_; }
  void removeEn0() { kernel_.removeLink("en0"); }
  static constexpr bool isCapped = true;

 private:
  FakeNetworkKernel kernel_;
  BsdConnectionMetricsReader reader_{kernel_};
};

class FakeReaderWorld {
 public:
  void open() { reader_.set("en0", ConnectionMetrics::initial(1400)); }
  [[nodiscard]] ConnectionMetricsReader& reader() { return reader_; }
  void removeEn0() { reader_.setCounters({}); }
  static constexpr bool isCapped = false;

 private:
  FakeConnectionMetricsReader reader_;
};

template <typename World>
class ConnectionMetricsReaderContract : public testing::Test {
 protected:
  void SetUp() override { world_.open(); }

  World world_;
};

using Worlds = testing::Types<LinuxReaderWorld, BsdReaderWorld, FakeReaderWorld>;

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    if (std::is_same_v<World, LinuxReaderWorld>) return "Linux";
    return std::is_same_v<World, BsdReaderWorld> ? "Bsd" : "Fake";
  }
};

TYPED_TEST_SUITE(ConnectionMetricsReaderContract, Worlds, WorldNames);

TYPED_TEST(ConnectionMetricsReaderContract, AnInterfaceHasItsCountersAndItsMtu) {
  const auto metrics = this->world_.reader().read().value();
  const ConnectionMetrics* en0 = metrics.find("en0");
  ASSERT_NE(en0, nullptr);
  EXPECT_EQ(*en0, ConnectionMetrics::initial(1400));
}

TYPED_TEST(ConnectionMetricsReaderContract, AnInterfaceThatIsNotThereHasNone) {
  EXPECT_EQ(this->world_.reader().read()->find("en"), nullptr);
}

TYPED_TEST(ConnectionMetricsReaderContract, EveryReadingIsFresh) {
  const auto before = this->world_.reader().read().value();
  this->world_.removeEn0();
  EXPECT_EQ(this->world_.reader().read()->find("en0"), nullptr);
  EXPECT_NE(before.find("en0"), nullptr);
}

TYPED_TEST(ConnectionMetricsReaderContract, TheWidthOfTheCountersDoesNotChange) {
  EXPECT_EQ(this->world_.reader().is32bitCapped(), TypeParam::isCapped);
  static_cast<void>(this->world_.reader().read());
  EXPECT_EQ(this->world_.reader().is32bitCapped(), TypeParam::isCapped);
}

}  // namespace
}  // namespace lanternfold::test
