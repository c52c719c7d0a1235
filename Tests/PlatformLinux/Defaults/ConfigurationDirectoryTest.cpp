#include "PlatformLinux/Defaults/ConfigurationDirectory.h"
#include "Tests/PlatformLinux/Contracts/GettextCatalogue.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

constexpr const char* product = "net.quernaple.LanternfoldX";

class ConfigurationDirectoryTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
};

TEST_F(ConfigurationDirectoryTest, StandsInTheUsersConfiguration) {
  const ScopedEnvironment configuration("XDG_CONFIG_HOME", folder_.path().string());
  EXPECT_EQ(ConfigurationDirectory().location(), folder_ / product);
  EXPECT_FALSE(fs::exists(folder_ / product));
}

TEST_F(ConfigurationDirectoryTest, StandsInTheHomeFolderOtherwise) {
  const ScopedEnvironment home("HOME", folder_.path().string());
  for (const char* odd : {"", "relative"}) {
    const ScopedEnvironment configuration("XDG_CONFIG_HOME", odd);
    EXPECT_EQ(ConfigurationDirectory().location(), folder_.path() / ".config" / product);
  }
}

TEST_F(ConfigurationDirectoryTest, IsMadeForItsUserAlone) {
  const ScopedEnvironment configuration("XDG_CONFIG_HOME", (folder_ / "new").string());
  const auto made = ConfigurationDirectory().folder();
  ASSERT_TRUE(made);
  EXPECT_EQ(fs::status(*made).permissions(), fs::perms::owner_all);
  EXPECT_EQ(ConfigurationDirectory().folder(), made);
}

TEST_F(ConfigurationDirectoryTest, SaysHowToChooseAnother) {
  folder_.write("file", "");
  const ScopedEnvironment configuration("XDG_CONFIG_HOME", (folder_ / "file").string());
  const auto made = ConfigurationDirectory().folder();
  ASSERT_FALSE(made);
  EXPECT_THAT(made.error(), AllOf(HasSubstr("XDG_CONFIG_HOME"), Not(HasSubstr("--data-dir"))));
}

TEST_F(ConfigurationDirectoryTest, IsRefusedWhenOthersMayWriteIntoIt) {
  const ScopedEnvironment configuration("XDG_CONFIG_HOME", folder_.path().string());
  fs::create_directory(folder_ / product);
  fs::permissions(folder_ / product, fs::perms::all);
  const auto made = ConfigurationDirectory().folder();
  ASSERT_FALSE(made);
  EXPECT_THAT(made.error(), HasSubstr("chmod go-w"));
}

}  // namespace
}  // namespace lanternfold
