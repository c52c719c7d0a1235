#include <sys/stat.h>
#include <unistd.h>

#include "PlatformLinux/Defaults/DataDirectory.h"
#include "PlatformLinux/Defaults/LinuxGroupContainer.h"
#include "Tests/PlatformLinux/ChildProcess.h"
#include "Tests/PlatformLinux/Contracts/GettextCatalogue.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr const char* product = "net.quernaple.LanternfoldX";

class DataDirectoryTest : public testing::Test {
 protected:
  [[nodiscard]] fs::path root() const { return folder_ / "data"; }
  [[nodiscard]] static fs::perms permissions(const fs::path& path) {
    return fs::status(path).permissions();
  }
  [[nodiscard]] static std::string errorOf(const DataDirectory::Folder& folder) {
    return folder ? "no error: " + folder->string() : folder.error();
  }

  TemporaryFolder folder_;
};

TEST_F(DataDirectoryTest, StandsInTheUsersDataFolder) {
  const ScopedEnvironment data("XDG_DATA_HOME", folder_.path().string());
  EXPECT_EQ(DataDirectory().location(), folder_ / product);
}

TEST_F(DataDirectoryTest, ARelativeDataFolderIsIgnored) {
  const ScopedEnvironment data("XDG_DATA_HOME", "share");
  const ScopedEnvironment home("HOME", folder_.path().string());
  EXPECT_EQ(DataDirectory().location(), folder_.path() / ".local/share" / product);
}

TEST_F(DataDirectoryTest, AnEmptyDataFolderIsIgnored) {
  const ScopedEnvironment data("XDG_DATA_HOME", "");
  const ScopedEnvironment home("HOME", folder_.path().string());
  EXPECT_EQ(DataDirectory().location(), folder_.path() / ".local/share" / product);
}

TEST_F(DataDirectoryTest, WithoutAHomeThePasswordDatabaseKnowsIt) {
  const ScopedEnvironment data("XDG_DATA_HOME", std::nullopt);
  const ScopedEnvironment home("HOME", std::nullopt);
  const auto location = DataDirectory().location();
  ASSERT_TRUE(location);
  EXPECT_TRUE(location->is_absolute());
  EXPECT_TRUE(location->string().ends_with("/.local/share/" + std::string(product)));
}

TEST_F(DataDirectoryTest, AUserWhomNobodyKnowsIsToldWhatToDo) {
  REQUIRE_ROOT("to become another user");
  ChildProcess child([] {
    ::unsetenv("XDG_DATA_HOME");
    ::setenv("HOME", "relative", 1);
    if (::setresuid(54'321, 54'321, 54'321) != 0) return 2;
    const DataDirectory directory;
    return !directory.location() && errorOf(directory.metricsFolder()).contains("--data-dir") ? 0
                                                                                              : 1;
  });
  EXPECT_EQ(child.wait(), 0);
}

TEST_F(DataDirectoryTest, AChosenFolderGoesBeforeTheUsersOwn) {
  const ScopedEnvironment data("XDG_DATA_HOME", "/nowhere");
  EXPECT_EQ(DataDirectory(root()).location(), root());
}

TEST_F(DataDirectoryTest, AChosenRelativeFolderIsOfTheWorkingFolder) {
  EXPECT_EQ(DataDirectory("data").location(), fs::current_path() / "data");
}

TEST_F(DataDirectoryTest, NothingIsMadeUntilItIsAskedFor) {
  const DataDirectory directory(root());
  EXPECT_FALSE(fs::exists(root()));
  EXPECT_TRUE(directory.metricsFolder());
  EXPECT_EQ(folder_.names(), std::set<std::string>{"data"});
  EXPECT_FALSE(fs::exists(root() / "groups"));
}

TEST_F(DataDirectoryTest, WhoOnlyReadsMakesNothingAndIsToldWhatIsRefused) {
  const DataDirectory directory(root());
  EXPECT_TRUE(directory.checkIfThere());
  EXPECT_FALSE(fs::exists(root()));
  EXPECT_EQ(directory.folder(), root());
  EXPECT_EQ(permissions(root()), fs::perms(0700));
  EXPECT_TRUE(directory.checkIfThere());
  fs::permissions(root(), fs::perms(0770));
  EXPECT_THAT(directory.checkIfThere().error(), HasSubstr("chmod go-w"));
  EXPECT_THAT(errorOf(directory.folder()), HasSubstr("chmod go-w"));
}

TEST_F(DataDirectoryTest, FoldersAreForTheUserAloneParentsIncluded) {
  const mode_t mask = ::umask(0);
  const DataDirectory directory(folder_ / "some/where/data");
  EXPECT_EQ(directory.defaultsFolder(), folder_ / "some/where/data/defaults");
  EXPECT_EQ(directory.groupFolder("group.a"), folder_ / "some/where/data/groups/group.a");
  EXPECT_EQ(directory.metricsFolder(), folder_ / "some/where/data/metrics");
  ::umask(mask);
  for (const char* name : {"some", "some/where", "some/where/data", "some/where/data/defaults",
                           "some/where/data/groups", "some/where/data/groups/group.a"}) {
    EXPECT_EQ(permissions(folder_ / name), fs::perms(0700)) << name;
  }
}

TEST_F(DataDirectoryTest, AFolderThatIsThereKeepsItsPermissions) {
  fs::create_directories(root() / "metrics");
  fs::permissions(root(), fs::perms(0755));
  fs::permissions(root() / "metrics", fs::perms(0500));
  EXPECT_TRUE(DataDirectory(root()).metricsFolder());
  EXPECT_EQ(permissions(root()), fs::perms(0755));
  EXPECT_EQ(permissions(root() / "metrics"), fs::perms(0500));
}

TEST_F(DataDirectoryTest, AFolderThatOthersMayWriteIntoIsRefused) {
  fs::create_directories(root());
  for (const int mode : {0770, 0702, 0777}) {
    fs::permissions(root(), fs::perms(mode));
    EXPECT_THAT(errorOf(DataDirectory(root()).defaultsFolder()), HasSubstr("chmod go-w"));
    EXPECT_EQ(permissions(root()), fs::perms(mode));
  }
  EXPECT_TRUE(fs::is_empty(root()));
}

TEST_F(DataDirectoryTest, AFolderInItThatOthersMayWriteIntoIsRefused) {
  fs::create_directories(root() / "defaults");
  fs::permissions(root(), fs::perms(0700));
  fs::permissions(root() / "defaults", fs::perms(0770));
  EXPECT_THAT(errorOf(DataDirectory(root()).defaultsFolder()), HasSubstr("defaults"));
  EXPECT_TRUE(DataDirectory(root()).metricsFolder());
}

TEST_F(DataDirectoryTest, AFolderOfAnotherUserIsRefused) {
  REQUIRE_ROOT("to give a folder away");
  fs::create_directories(root());
  ASSERT_EQ(::chown(root().c_str(), 54'321, 54'321), 0);
  EXPECT_THAT(errorOf(DataDirectory(root()).defaultsFolder()), HasSubstr("another user"));
}

TEST_F(DataDirectoryTest, AFileInThePlaceOfAFolderIsASentence) {
  folder_.write("data", "mine");
  EXPECT_THAT(errorOf(DataDirectory(root()).defaultsFolder()), HasSubstr("is not a folder"));
  EXPECT_EQ(folder_.bytesOf("data"), "mine");
  // What is in the way is named, however far above.
  for (const char* below : {"below", "below/and/further"}) {
    EXPECT_EQ(errorOf(DataDirectory(root() / below).defaultsFolder()),
              '"' + root().string() +
                  "\" is not a folder; move it away, or choose a folder with --data-dir");
  }
}

TEST_F(DataDirectoryTest, AFolderThatIsLinkedToIsUsed) {
  fs::create_directory(folder_ / "disk");
  fs::create_symlink("disk", root());
  EXPECT_EQ(DataDirectory(root()).metricsFolder(), root() / "metrics");
  EXPECT_TRUE(fs::is_directory(folder_ / "disk/metrics"));
}

TEST_F(DataDirectoryTest, ALinkThatLeadsToNothingIsASentence) {
  fs::create_symlink("gone", root());
  EXPECT_THAT(errorOf(DataDirectory(root()).metricsFolder()),
              HasSubstr("is a link that leads nowhere; remove it"));
}

TEST_F(DataDirectoryTest, AFolderWithoutTheRightToWriteIsASentence) {
  REQUIRE_ROOT("to become another user");
  fs::permissions(folder_.path(), fs::perms(0755));
  ChildProcess child([this] {
    if (::setresuid(54'321, 54'321, 54'321) != 0) return 2;
    const std::string error = errorOf(DataDirectory(root()).metricsFolder());
    return error.contains("Permission denied") && error.contains("--data-dir") ? 0 : 1;
  });
  EXPECT_EQ(child.wait(), 0);
}

TEST_F(DataDirectoryTest, AContainerTellsWhyAGroupHasNoFolder) {
  folder_.write("data", "mine");
  const DataDirectory directory(root());
  LinuxGroupContainer container(directory);
  const std::string why = '"' + root().string() +
                          "\" is not a folder; move it away, or choose a folder with --data-dir";
  EXPECT_EQ(container.folder("group.a").error(), why);
  EXPECT_EQ(container.metricsFolder().error(), why);
  EXPECT_THAT(container.folder("../a").error(), HasSubstr("cannot name one"));
}

TEST_F(DataDirectoryTest, ALoopOfLinksIsToldAsOne) {
  fs::create_symlink("data", root());
  for (const fs::path& chosen : {root(), root() / "below"}) {
    EXPECT_EQ(errorOf(DataDirectory(chosen).metricsFolder()),
              "cannot make the folder \"" + chosen.string() +
                  "\": Too many levels of symbolic links; remove the link in it that leads back "
                  "to itself, or choose another folder with --data-dir");
  }
}

TEST_F(DataDirectoryTest, AnOverlongNameIsToldAsOneAndCut) {
  const fs::path chosen = folder_ / std::string(3000, 'a');
  const std::string error = errorOf(DataDirectory(chosen).metricsFolder());
  EXPECT_THAT(error, testing::EndsWith("...\": File name too long; choose a folder with a shorter "
                                       "name with --data-dir"));
  EXPECT_LT(error.size(), 1000U);
}

TEST(DataDirectoryDeathTest, AFolderOfWhatNamesNoGroupStopsTheProgram) {
  EXPECT_DEATH((void)DataDirectory("/nowhere").groupFolder(".."), "names no group");
}

}  // namespace
}  // namespace lanternfold
