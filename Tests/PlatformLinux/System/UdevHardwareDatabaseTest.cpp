// The real library over a database of the test's own.
#include "PlatformLinux/System/UdevHardwareDatabase.h"
#include "Tests/PlatformLinux/HardwareDatabaseFile.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"
#include "Tests/PlatformLinux/PrivateEtc.h"

namespace lanternfold {
namespace {

class UdevHardwareDatabaseTest : public testing::Test {
 protected:
  void SetUp() override {
    ENTER_NETWORK_NAMESPACE(namespace_);
    ASSERT_TRUE(PrivateEtc::mount());
  }

  /// Where the library looks before it looks at what the distribution installed.
  static void install(std::string_view file) { PrivateEtc::write("systemd/hwdb/hwdb.bin", file); }

  std::unique_ptr<NetworkNamespace> namespace_;
  UdevHardwareDatabase database_;
};

TEST_F(UdevHardwareDatabaseTest, KnowsVendorAndModelOfADevice) {
  install(hardwareDatabaseFile("usb:v0BDAp8153",
                               {{"ID_MODEL_FROM_DATABASE", "RTL8153 Gigabit Ethernet Adapter"},
                                {"ID_VENDOR_FROM_DATABASE", "Realtek Semiconductor Corp."}}));
  EXPECT_EQ(database_.namesFor("usb:v0BDAp8153d3000dc00dsc00dp00icFFiscFFip00in00"),
            (HardwareNames{"Realtek Semiconductor Corp.", "RTL8153 Gigabit Ethernet Adapter"}));
}

TEST_F(UdevHardwareDatabaseTest, AVendorWithoutAModelLeavesTheModelEmpty) {
  install(hardwareDatabaseFile("pci:v00001AF4", {{"ID_VENDOR_FROM_DATABASE", "Red Hat, Inc."}}));
  EXPECT_EQ(database_.namesFor("pci:v00001AF4d00009999"), (HardwareNames{"Red Hat, Inc.", ""}));
}

TEST_F(UdevHardwareDatabaseTest, AnUnknownDeviceIsNone) {
  install(hardwareDatabaseFile("usb:v0BDAp8153", {{"ID_MODEL_FROM_DATABASE", "RTL8153"}}));
  EXPECT_EQ(database_.namesFor("virtio:d00000001v00001AF4"), std::nullopt);
  EXPECT_EQ(database_.namesFor(""), std::nullopt);
}

TEST_F(UdevHardwareDatabaseTest, AKnownDeviceOfOtherPropertiesOnlyIsNone) {
  install(hardwareDatabaseFile("usb:v0BDAp8153", {{"ID_AUTOSUSPEND", "1"}}));
  EXPECT_EQ(database_.namesFor("usb:v0BDAp8153d3000"), std::nullopt);
}

TEST_F(UdevHardwareDatabaseTest, ADatabaseInstalledLaterIsFound) {
  EXPECT_EQ(database_.namesFor("usb:vFFFEp8153d3000"), std::nullopt);
  install(hardwareDatabaseFile("usb:vFFFEp8153", {{"ID_MODEL_FROM_DATABASE", "X1"}}));
  EXPECT_EQ(database_.namesFor("usb:vFFFEp8153d3000"), (HardwareNames{"", "X1"}));
}

TEST_F(UdevHardwareDatabaseTest, AFileThatIsNoDatabaseIsNone) {
  install("not a database");
  EXPECT_EQ(database_.namesFor("usb:vFFFEp8153d3000"), std::nullopt);
}

}  // namespace
}  // namespace lanternfold
