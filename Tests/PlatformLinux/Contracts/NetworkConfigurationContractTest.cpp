// What every network configuration does, run against the Linux side and the fake.
#include "Platform/NetworkConfiguration.h"
#include "PlatformLinux/System/LinuxNetworkConfiguration.h"
#include "PlatformLinux/System/UdevHardwareDatabase.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"
#include "Tests/Support/FakeNetworkConfiguration.h"

namespace lanternfold {
namespace {

/// A container's network: the adapters "eth0" and "eth1", loopback and the bridge "docker0".
class LinuxConfigurationWorld {
 public:
  void open() {
    ENTER_NETWORK_NAMESPACE(network_);
    ASSERT_TRUE(
        NetworkNamespace::run("ip link add eth1 type veth peer name one && "
                              "ip link add eth0 type veth peer name zero && "
                              "ip link add docker0 type bridge"));
  }
  void removeAdapters() {
    ASSERT_TRUE(NetworkNamespace::run("ip link del eth0 && ip link del eth1"));
  }
  [[nodiscard]] const NetworkConfiguration& configuration() const { return configuration_; }

 private:
  std::unique_ptr<NetworkNamespace> network_;
  UdevHardwareDatabase database_;
  LinuxNetworkConfiguration configuration_{database_};
};

class FakeConfigurationWorld {
 public:
  void open() {
    configuration_.addInterface("eth0", ConfiguredInterfaceType::ethernet, std::nullopt);
    configuration_.addInterface("eth1", ConfiguredInterfaceType::ethernet, std::nullopt);
    configuration_.setScopedType("eth0", PathInterfaceType::wiredEthernet);
    configuration_.setScopedType("lo", PathInterfaceType::loopback);
    configuration_.setScopedType("docker0", PathInterfaceType::other);
  }
  void removeAdapters() { configuration_.removeInterfaces(); }
  [[nodiscard]] const NetworkConfiguration& configuration() const { return configuration_; }

 private:
  FakeNetworkConfiguration configuration_;
};

template <typename World>
class NetworkConfigurationContract : public testing::Test {
 protected:
  void SetUp() override { world_.open(); }

  [[nodiscard]] std::optional<PathInterfaceType> scopedType(std::string_view address) const {
    return world_.configuration().scopedInterfaceType(address);
  }

  World world_;
};

using Worlds = testing::Types<LinuxConfigurationWorld, FakeConfigurationWorld>;

class WorldNames {
 public:
  template <typename World>
  static std::string GetName(int) {
    return std::is_same_v<World, LinuxConfigurationWorld> ? "Linux" : "Fake";
  }
};

TYPED_TEST_SUITE(NetworkConfigurationContract, Worlds, WorldNames);

TYPED_TEST(NetworkConfigurationContract, ListsAdaptersOnlyInAStableOrder) {
  const std::vector<ConfiguredInterface> expected = {
      {"eth0", ConfiguredInterfaceType::ethernet, std::nullopt},
      {"eth1", ConfiguredInterfaceType::ethernet, std::nullopt}};
  EXPECT_EQ(this->world_.configuration().allInterfaces(), expected);
  EXPECT_EQ(this->world_.configuration().allInterfaces(), expected);
}

TYPED_TEST(NetworkConfigurationContract, AMachineWithoutAdaptersHasAnEmptyList) {
  this->world_.removeAdapters();
  EXPECT_TRUE(this->world_.configuration().allInterfaces().empty());
}

TYPED_TEST(NetworkConfigurationContract, AScopedAddressTellsTheTypeOfItsInterface) {
  EXPECT_EQ(this->scopedType("127.0.0.1%eth0"), PathInterfaceType::wiredEthernet);
  EXPECT_EQ(this->scopedType("127.0.0.1%lo"), PathInterfaceType::loopback);
  EXPECT_EQ(this->scopedType("127.0.0.1%docker0"), PathInterfaceType::other);
}

TYPED_TEST(NetworkConfigurationContract, AScopedAddressOfNoInterfaceHasNoType) {
  EXPECT_EQ(this->scopedType("127.0.0.1%utun0"), std::nullopt);
}

TYPED_TEST(NetworkConfigurationContract, ATextThatIsNoScopedAddressHasNoType) {
  for (const char* text : {"", "eth0", "%eth0", "127.0.0.1", "127.0.0.1%", "127.0.0%eth0",
                           "300.0.0.1%eth0", "127.0.0.1%eth0%eth0", "127.0.0.1%eth0 "}) {
    EXPECT_EQ(this->scopedType(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace lanternfold
