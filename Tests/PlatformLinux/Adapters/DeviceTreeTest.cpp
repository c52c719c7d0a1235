#include <fstream>
#include <unistd.h>

#include "PlatformLinux/Adapters/DeviceTree.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;

/// A sysfs of the test's own, removed with it.
class DeviceTreeTest : public testing::Test {
 protected:
  DeviceTreeTest() {
    fs::create_directories(root_ / "class/net");
    fs::create_directories(root_ / "devices/virtual/net");
  }

  void write(const fs::path& path, std::string_view text) {
    fs::create_directories((root_ / path).parent_path());
    std::ofstream(root_ / path) << text;
  }

  /// A link on the device at `device` (below "devices"); of none when empty.
  void addLink(const std::string& name, const std::string& uevent, const fs::path& device) {
    const fs::path owner = device.empty() ? fs::path("devices/virtual") : "devices" / device;
    const fs::path entry = owner / "net" / name;
    write(entry / "uevent", uevent);
    fs::create_directory_symlink(root_ / entry, root_ / "class/net" / name);
    if (!device.empty()) fs::create_directory_symlink(root_ / owner, root_ / entry / "device");
  }

  void addDriver(const fs::path& device, const std::string& driver) {
    fs::create_directories(root_ / "bus/drivers" / driver);
    fs::create_directory_symlink(root_ / "bus/drivers" / driver,
                                 root_ / "devices" / device / "driver");
  }

  const TemporaryFolder temporary_;
  const fs::path& root_ = temporary_.path();
};

TEST_F(DeviceTreeTest, TellsDeviceTypeRadioAndDriver) {
  addLink("wlan0", "DEVTYPE=wlan\nINTERFACE=wlan0\nIFINDEX=3\n", "pci0000:00/0000:00:14.3");
  addDriver("pci0000:00/0000:00:14.3", "iwlwifi");
  fs::create_directories(root_ / "class/net/wlan0/phy80211");
  EXPECT_EQ(DeviceTree(root_).link("wlan0", 3),
            (DeviceTreeLink{
                .deviceType = "wlan", .hasRadio = true, .hasDevice = true, .driver = "iwlwifi"}));
}

TEST_F(DeviceTreeTest, ASoftwareLinkHasNoDevice) {
  addLink("docker0", "DEVTYPE=bridge\nINTERFACE=docker0\nIFINDEX=7\n", "");
  EXPECT_EQ(DeviceTree(root_).link("docker0", 7), (DeviceTreeLink{.deviceType = "bridge"}));
}

TEST_F(DeviceTreeTest, AnEntryOfAnotherIndexIsOfAnotherNamespaceAndNotBelieved) {
  addLink("eth0", "INTERFACE=eth0\nIFINDEX=2\n", "pci0000:00/0000:00:03.0");
  write("devices/pci0000:00/0000:00:03.0/modalias", "pci:v00008086d00001533\n");
  EXPECT_EQ(DeviceTree(root_).link("eth0", 4), std::nullopt);
  EXPECT_EQ(DeviceTree(root_).adapterModalias("eth0", 4), std::nullopt);
  EXPECT_NE(DeviceTree(root_).link("eth0", 2), std::nullopt);
}

TEST_F(DeviceTreeTest, AMissingTreeTellsNothing) {
  EXPECT_EQ(DeviceTree(root_ / "nowhere").link("eth0", 2), std::nullopt);
  EXPECT_EQ(DeviceTree(root_ / "nowhere").adapterModalias("eth0", 2), std::nullopt);
}

TEST_F(DeviceTreeTest, ANameThatLeadsElsewhereIsNotFollowed) {
  write("class/uevent", "IFINDEX=2\n");
  for (const std::string_view name : {"", ".", "..", "../net", "a/b"}) {
    EXPECT_EQ(DeviceTree(root_).link(name, 2), std::nullopt) << name;
  }
}

TEST_F(DeviceTreeTest, TheModaliasIsThatOfTheNearestCardAboveTheDevice) {
  const fs::path card = "pci0000:00/0000:00:03.0";
  addLink("eth0", "IFINDEX=2\n", card / "virtio2");
  write("devices" / card / "virtio2/modalias", "virtio:d00000001v00001AF4\n");
  write("devices" / card / "modalias", "pci:v00001AF4d00001041sv\n");
  EXPECT_EQ(DeviceTree(root_).adapterModalias("eth0", 2), "pci:v00001AF4d00001041sv");
}

TEST_F(DeviceTreeTest, AStickIsNotNamedAfterTheHubAboveIt) {
  const fs::path hub = "pci0000:00/0000:00:14.0";
  addLink("eth1", "IFINDEX=5\n", hub / "usb1/1-2/1-2:1.0");
  write("devices" / hub / "usb1/1-2/1-2:1.0/modalias", "usb:v0BDAp8153d3000\n");
  write("devices" / hub / "modalias", "pci:v00008086d0000A36D\n");
  EXPECT_EQ(DeviceTree(root_).adapterModalias("eth1", 5), "usb:v0BDAp8153d3000");
}

TEST_F(DeviceTreeTest, ADeviceOffEveryKnownBusHasNoModalias) {
  addLink("eth0", "IFINDEX=2\n", "platform/soc/fec.0");
  write("devices/platform/soc/fec.0/modalias", "of:NethernetT(null)Cfsl,imx6q-fec\n");
  EXPECT_EQ(DeviceTree(root_).adapterModalias("eth0", 2), std::nullopt);
}

TEST_F(DeviceTreeTest, ARadioIsBlockedByEitherSwitchOfAnyOfItsKeys) {
  write("class/net/wlan0/uevent", "IFINDEX=3\n");
  const DeviceTree tree(root_);
  EXPECT_FALSE(tree.radioIsBlocked("wlan0", 3));
  write("class/net/wlan0/phy80211/rfkill0/soft", "0\n");
  write("class/net/wlan0/phy80211/rfkill0/hard", "0\n");
  write("class/net/wlan0/phy80211/power/soft", "1\n");
  EXPECT_FALSE(tree.radioIsBlocked("wlan0", 3));
  write("class/net/wlan0/phy80211/rfkill7/hard", "1\n");
  EXPECT_TRUE(tree.radioIsBlocked("wlan0", 3));
  EXPECT_FALSE(tree.radioIsBlocked("wlan0", 4));
  EXPECT_FALSE(tree.radioIsBlocked("wlan1", 3));
}

TEST(LinkEventFile, SkipsUnknownKeysAndBrokenNumbers) {
  EXPECT_EQ(parseLinkEventFile("INTERFACE=a\nIFINDEX=12\nDEVTYPE=wlan"),
            (LinkEventFile{.index = 12, .deviceType = "wlan"}));
  EXPECT_EQ(parseLinkEventFile("IFINDEX=12x\n").index, 0U);
  EXPECT_EQ(parseLinkEventFile("IFINDEX=99999999999\n").index, 0U);
  EXPECT_EQ(parseLinkEventFile("IFINDEX=-1\n").index, 0U);
  EXPECT_EQ(parseLinkEventFile("\n\n="), LinkEventFile{});
  EXPECT_EQ(parseLinkEventFile(""), LinkEventFile{});
}

}  // namespace
}  // namespace lanternfold
