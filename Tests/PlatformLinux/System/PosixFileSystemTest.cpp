// What only the kernel's own files can show: links, pipes, permissions, leftovers.
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "PlatformLinux/System/PosixFileSystem.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

constexpr std::size_t largest = 1024 * 1024;

class PosixFileSystemTest : public testing::Test {
 protected:
  [[nodiscard]] fs::path file() const { return folder_ / "a.json"; }
  [[nodiscard]] std::string bytes() const { return folder_.bytesOf("a.json"); }
  [[nodiscard]] fs::perms permissions() const { return fs::status(file()).permissions(); }

  TemporaryFolder folder_;
  PosixFileSystem files_;
};

TEST_F(PosixFileSystemTest, FilesAreForTheUserAlone) {
  const mode_t mask = ::umask(0);
  EXPECT_TRUE(files_.replaceFile(file(), "x"));
  EXPECT_EQ(permissions(), fs::perms(0600));
  fs::permissions(file(), fs::perms(0644));
  EXPECT_TRUE(files_.replaceFile(file(), "x"));
  EXPECT_EQ(permissions(), fs::perms(0600));
  fs::remove(file());
  EXPECT_TRUE(files_.createEmptyFile(file()));
  ::umask(mask);
  EXPECT_EQ(permissions(), fs::perms(0600));
}

TEST_F(PosixFileSystemTest, AStrictMaskDoesNotTakeTheUsersOwnRights) {
  const mode_t mask = ::umask(0777);
  EXPECT_TRUE(files_.replaceFile(file(), "x"));
  ::umask(mask);
  EXPECT_EQ(permissions(), fs::perms(0600));
}

TEST_F(PosixFileSystemTest, NothingStandsBesideAReplacedFile) {
  for (int count = 0; count < 20; ++count) EXPECT_TRUE(files_.replaceFile(file(), "x"));
  EXPECT_EQ(folder_.names(), Names{"a.json"});
}

TEST_F(PosixFileSystemTest, AFileThatIsLinkedToIsKeptAsideInItsOwnFolder) {
  fs::create_directory(folder_ / "elsewhere");
  fs::create_symlink("elsewhere/kept.json", file());
  EXPECT_TRUE(files_.replaceFile(file(), "old"));
  EXPECT_TRUE(files_.keepAside(file()));
  EXPECT_TRUE(files_.replaceFile(file(), "new"));
  EXPECT_EQ(folder_.bytesOf("elsewhere/kept.json.damaged-1"), "old");
  EXPECT_EQ(folder_.names(), (Names{"a.json", "elsewhere"}));
}

TEST_F(PosixFileSystemTest, AFileThatIsLinkedToIsReplacedAndTheLinkStays) {
  fs::create_directory(folder_ / "elsewhere");
  fs::create_symlink("elsewhere/kept.json", file());
  EXPECT_TRUE(files_.replaceFile(file(), "new")) << "the link may lead to nothing as yet";
  EXPECT_TRUE(files_.replaceFile(file(), "newer"));
  EXPECT_TRUE(fs::is_symlink(file()));
  EXPECT_EQ(folder_.bytesOf("elsewhere/kept.json"), "newer");
  EXPECT_TRUE(files_.removeFile(file()));
  EXPECT_EQ(folder_.names(), Names{"elsewhere"});
  EXPECT_EQ(folder_.bytesOf("elsewhere/kept.json"), "newer");
}

TEST_F(PosixFileSystemTest, ALoopOfLinksIsAnError) {
  fs::create_symlink("b.json", file());
  fs::create_symlink("a.json", folder_ / "b.json");
  const auto loop = std::errc::too_many_symbolic_link_levels;
  EXPECT_EQ(files_.attributes(file()).error(), loop);
  EXPECT_EQ(files_.readFile(file(), largest).error(), loop);
  EXPECT_EQ(files_.replaceFile(file(), "x").error(), loop);
  EXPECT_EQ(files_.createEmptyFile(file()).error(), loop);
  EXPECT_EQ(folder_.names(), (Names{"a.json", "b.json"}));
}

TEST_F(PosixFileSystemTest, ASocketAndADeviceAreInvalid) {
  sockaddr_un address{.sun_family = AF_UNIX};
  file().native().copy(&address.sun_path[0], sizeof address.sun_path - 1);
  const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  ASSERT_EQ(::bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(files_.readFile(file(), largest).error(), std::errc::invalid_argument);
  EXPECT_EQ(files_.readFile("/dev/zero", largest).error(), std::errc::invalid_argument);
  ::close(listener);
}

TEST_F(PosixFileSystemTest, ALinkToADeviceLeavesTheDevice) {
  fs::create_symlink("/dev/null", file());
  EXPECT_EQ(files_.replaceFile(file(), "x").error(), std::errc::invalid_argument);
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(PosixFileSystemTest, AFileThatSaysNothingOfItsSizeIsReadToItsEnd) {
  const auto contents = files_.readFile("/proc/self/status", largest);
  ASSERT_TRUE(contents);
  EXPECT_EQ(contents->attributes.sizeBytes, 0U);
  EXPECT_THAT(contents->bytes, testing::HasSubstr("voluntary_ctxt_switches"));
  EXPECT_EQ(files_.readFile("/proc/self/status", 100).error(), std::errc::file_too_large);
}

TEST_F(PosixFileSystemTest, DatesAreAsPreciseAsTheFileSystemKeepsThem) {
  folder_.write("a.json", "x");
  const timespec times[2] = {{.tv_sec = 1, .tv_nsec = 2}, {.tv_sec = 1'700'000'000, .tv_nsec = 7}};
  ASSERT_EQ(::utimensat(AT_FDCWD, file().c_str(), times, 0), 0);
  EXPECT_EQ(files_.attributes(file())->modificationDate.time_since_epoch(),
            std::chrono::nanoseconds(1'700'000'000'000'000'007));
}

TEST_F(PosixFileSystemTest, ANameAsLongAsTheFileSystemAllowsIsNotTooLong) {
  const std::string name(255, 'x');
  EXPECT_TRUE(files_.replaceFile(folder_ / name, "x"));
  EXPECT_EQ(folder_.names(), Names{name});
}

TEST_F(PosixFileSystemTest, APathWithoutAFolderMeansTheWorkingFolder) {
  const fs::path before = fs::current_path();
  fs::current_path(folder_.path());
  EXPECT_TRUE(files_.replaceFile("a.json", "x"));
  fs::current_path(before);
  EXPECT_EQ(bytes(), "x");
}

}  // namespace
}  // namespace lanternfold
