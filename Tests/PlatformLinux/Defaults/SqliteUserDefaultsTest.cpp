// The settings' files: where they stand, who may read them, what a disk that does not take them
// does.
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

#include "PlatformLinux/Defaults/SqliteUserDefaults.h"
#include "Tests/PlatformLinux/ChildProcess.h"
#include "Tests/PlatformLinux/Defaults/DefaultsFixture.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"
#include "Tests/PlatformLinux/RefusedCall.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using Names = std::set<std::string>;

using SqliteUserDefaultsTest = DefaultsFixture;

TEST_F(SqliteUserDefaultsTest, WhatWasSetIsThereInTheNextRun) {
  {
    DefaultsProgram(data()).defaults->set("key", "value");
  }
  const DefaultsProgram next(data());
  EXPECT_EQ(next.defaults->object("key"), PropertyListValue("value"));
  EXPECT_EQ(next.log.lines(), std::vector<std::string>{});
}

TEST_F(SqliteUserDefaultsTest, TheLastProgramLeavesOneFile) {
  {
    DefaultsProgram(data()).defaults->set("key", "value");
  }
  EXPECT_EQ(names(), Names{"standard.sqlite"});
}

TEST_F(SqliteUserDefaultsTest, AGroupHasAFileOfItsName) {
  DefaultsProgram program(data());
  program.suites.suite("group.example.widgets")->set("key", "value");
  EXPECT_TRUE(fs::exists(defaultsFolder() / "group.example.widgets.sqlite"));
  EXPECT_FALSE(fs::exists(database()));
}

TEST_F(SqliteUserDefaultsTest, TheGroupStandardIsTheProgramsOwnSuite) {
  DefaultsProgram program(data());
  EXPECT_EQ(program.suites.suite("standard"), program.suites.standard());
}

TEST_F(SqliteUserDefaultsTest, EveryFileIsForTheUserAlone) {
  const mode_t mask = ::umask(0);
  const DefaultsProgram program(data());
  program.defaults->set("key", "value");
  ::umask(mask);
  EXPECT_EQ(names(), (Names{"standard.sqlite", "standard.sqlite-shm", "standard.sqlite-wal"}));
  for (const auto& entry : fs::directory_iterator(defaultsFolder())) {
    EXPECT_EQ(entry.status().permissions(), fs::perms(0600)) << entry.path();
  }
}

TEST_F(SqliteUserDefaultsTest, ADatabaseThatOthersMayReadIsClosedToThem) {
  {
    DefaultsProgram(data()).defaults->set("key", "value");
  }
  fs::permissions(database(), fs::perms(0644));
  const DefaultsProgram next(data());
  EXPECT_EQ(next.integer("none"), 0);
  EXPECT_EQ(fs::status(database()).permissions(), fs::perms(0600));
}

TEST_F(SqliteUserDefaultsTest, ADatabaseThatIsLinkedToIsUsedWhereItIs) {
  makeFolders();
  fs::create_directory(folder_ / "elsewhere");
  fs::create_symlink("../../elsewhere/kept.sqlite", database());
  {
    DefaultsProgram(data()).defaults->set("key", "value");
  }
  EXPECT_TRUE(fs::is_symlink(database()));
  EXPECT_GT(fs::file_size(folder_ / "elsewhere/kept.sqlite"), 0U);
  EXPECT_EQ(DefaultsProgram(data()).defaults->object("key"), PropertyListValue("value"));
}

TEST_F(SqliteUserDefaultsTest, AFolderThatCannotBeMadeLeavesTheSuiteInMemory) {
  folder_.write("data", "in the way");
  const DefaultsProgram program(data());
  program.defaults->set("key", "value");
  EXPECT_EQ(program.defaults->object("key"), PropertyListValue("value"));
  EXPECT_THAT(program.synchronized(), HasSubstr("is not a folder"));

  fs::remove(data());
  EXPECT_EQ(program.synchronized(), "") << "tried again";
  EXPECT_EQ(DefaultsProgram(data()).defaults->object("key"), PropertyListValue("value"));
}

TEST_F(SqliteUserDefaultsTest, AGroupThatCannotBeOpenedIsNullAndSaysWhy) {
  folder_.write("data", "in the way");
  DefaultsProgram program(data());
  EXPECT_EQ(program.suites.suite("group.a"), nullptr);
  ASSERT_EQ(program.log.lines().size(), 1U);
  EXPECT_THAT(program.log.lines().front(), HasSubstr("group.a"));
  fs::remove(data());
  EXPECT_NE(program.suites.suite("group.a"), nullptr);
}

TEST_F(SqliteUserDefaultsTest, RemovalsThatTheDiskDoesNotTakeAreKeptToo) {
  {
    DefaultsProgram(data()).defaults->set("key", "value");
  }
  fs::rename(data(), folder_ / "away");
  folder_.write("data", "in the way");
  const DefaultsProgram program(data());
  program.defaults->remove("key");
  EXPECT_THAT(program.synchronized(), HasSubstr("is not a folder"));
  fs::remove(data());
  fs::rename(folder_ / "away", data());
  EXPECT_EQ(program.synchronized(), "");
  EXPECT_EQ(DefaultsProgram(data()).defaults->object("key"), std::nullopt);
}

TEST_F(SqliteUserDefaultsTest, AValueLongerThanTheDatabaseTakesIsKeptInMemory) {
  const DefaultsProgram program(data());
  const std::string tooLong(65 * std::size_t{1024} * 1024, 'x');
  program.defaults->set("long", tooLong);
  EXPECT_EQ(program.defaults->object("long"), PropertyListValue(tooLong));
  EXPECT_THAT(program.synchronized(), HasSubstr("too big"));
  program.defaults->set("long", "short");
  EXPECT_EQ(program.synchronized(), "");
}

TEST_F(SqliteUserDefaultsTest, AnotherProgramsLockIsWaitedForAndThenWorkedAround) {
  const DefaultsProgram program(data());
  program.defaults->set("key", "first");
  auto blocker = SqliteConnection::open(database());
  ASSERT_TRUE(blocker && blocker->execute("BEGIN IMMEDIATE"));
  const auto begin = std::chrono::steady_clock::now();
  program.defaults->set("key", "second");
  const auto waited = std::chrono::steady_clock::now() - begin;
  EXPECT_GE(waited, std::chrono::milliseconds(900));
  EXPECT_LT(waited, std::chrono::seconds(3));
  EXPECT_EQ(program.defaults->object("key"), PropertyListValue("second"));
  EXPECT_THAT(program.synchronized(), HasSubstr("locked"));
  ASSERT_TRUE(blocker->execute("ROLLBACK"));
  EXPECT_EQ(program.synchronized(), "");
  EXPECT_EQ(DefaultsProgram(data()).defaults->object("key"), PropertyListValue("second"));
}

TEST_F(SqliteUserDefaultsTest, ACallWaitsForAllLocksTogetherNoLongerThanASecond) {
  using std::chrono::milliseconds;
  {
    DefaultsProgram(data()).defaults->set("key", "first");
  }
  auto blocker = SqliteConnection::open(database());
  ASSERT_TRUE(blocker && blocker->execute("BEGIN IMMEDIATE"));
  // Of several tries, since a busy machine may hold up one of them.
  std::chrono::nanoseconds shortest = std::chrono::hours(1);
  for (int tries = 0; tries < 5 && shortest > milliseconds(1500); ++tries) {
    std::optional<FileDescriptor> opener = keepFromOpening(database());
    std::thread opening([&opener] {
      std::this_thread::sleep_for(milliseconds(800));
      opener.reset();
    });
    const DefaultsProgram program(data());
    const auto begin = std::chrono::steady_clock::now();
    program.defaults->set("key", "second");
    shortest =
        std::min<std::chrono::nanoseconds>(shortest, std::chrono::steady_clock::now() - begin);
    opening.join();
    EXPECT_THAT(program.synchronized(), HasSubstr("database is locked"));
  }
  EXPECT_GE(shortest, milliseconds(900));
  EXPECT_LT(shortest, milliseconds(1700)) << "a second for each lock";
}

TEST_F(SqliteUserDefaultsTest, SynchronisingWaitsForTheDiskAndSettingDoesNot) {
  ChildProcess child([this] {
    const DefaultsProgram program(data());
    program.defaults->set("key", "first");
    const RefusedCall whole{.number = SYS_fsync, .error = EIO};
    const RefusedCall dataAlone{.number = SYS_fdatasync, .error = EIO};
    if (!whole.install() || !dataAlone.install()) return 255;
    program.defaults->set("key", "second");
    if (DefaultsProgram(data()).defaults->object("key") != PropertyListValue("second")) return 1;
    return program.synchronized().contains("I/O error") ? 0 : 2;
  });
  EXPECT_EQ(child.wait(), 0);
}

TEST_F(SqliteUserDefaultsTest, ADatabaseThatMayOnlyBeReadIsReadAndSaysSo) {
  REQUIRE_ROOT("to become another user");
  {
    DefaultsProgram(data()).defaults->set("key", "value");
  }
  fs::permissions(database(), fs::perms(0400));
  for (const auto& path : {folder_.path(), data(), defaultsFolder(), database(),
                           defaultsFolder() / "standard.sqlite.lock"}) {
    ASSERT_EQ(::chown(path.c_str(), 54'321, 54'321), 0);
  }
  ChildProcess child([this] {
    if (::setresuid(54'321, 54'321, 54'321) != 0) return 255;
    const DefaultsProgram program(data());
    if (program.defaults->object("key") != PropertyListValue("value")) return 1;
    program.defaults->set("key", "new");
    if (program.defaults->object("key") != PropertyListValue("new")) return 2;
    return program.synchronized().contains("permissions") ? 0 : 3;
  });
  EXPECT_EQ(child.wait(), 0);
}

TEST_F(SqliteUserDefaultsTest, ALoopOfLinksIsASentence) {
  makeFolders();
  fs::create_symlink("standard.sqlite", database());
  const DefaultsProgram program(data());
  program.defaults->set("key", "value");
  EXPECT_EQ(program.defaults->object("key"), PropertyListValue("value"));
  EXPECT_THAT(program.synchronized(), HasSubstr("symbolic links"));
}

using SqliteUserDefaultsInNamespaceTest = DefaultsFixture;

TEST_F(SqliteUserDefaultsInNamespaceTest, AFullDiskIsWorkedAroundUntilThereIsRoom) {
  std::unique_ptr<NetworkNamespace> inside;
  ENTER_NETWORK_NAMESPACE(inside);
  ASSERT_EQ(::mount("tmpfs", folder_.path().c_str(), "tmpfs", 0, "size=512k,mode=0700"), 0);
  const DefaultsProgram program(data());
  program.defaults->set("before", "kept");
  folder_.write("filler", std::string(1'000'000, 'x'));
  const std::string large(50'000, 'y');
  program.defaults->set("large", large);
  program.defaults->remove("before");
  EXPECT_EQ(program.defaults->object("large"), PropertyListValue(large));
  EXPECT_EQ(program.defaults->object("before"), std::nullopt);
  EXPECT_THAT(program.synchronized(), HasSubstr("make room"));
  EXPECT_THAT(program.synchronized(), HasSubstr("make room"));

  fs::remove(folder_ / "filler");
  EXPECT_EQ(program.synchronized(), "");
  const DefaultsProgram next(data());
  EXPECT_EQ(next.defaults->object("large"), PropertyListValue(large));
  EXPECT_EQ(next.defaults->object("before"), std::nullopt);
  EXPECT_EQ(program.log.lines(), std::vector<std::string>{});
}

TEST_F(SqliteUserDefaultsInNamespaceTest, ADiskThatIsFullFromTheBeginningIsWorkedAround) {
  std::unique_ptr<NetworkNamespace> inside;
  ENTER_NETWORK_NAMESPACE(inside);
  ASSERT_EQ(::mount("tmpfs", folder_.path().c_str(), "tmpfs", 0, "size=64k,mode=0700"), 0);
  makeFolders();
  folder_.write("filler", std::string(100'000, 'x'));
  const DefaultsProgram program(data());
  program.defaults->set("key", "value");
  EXPECT_EQ(program.defaults->object("key"), PropertyListValue("value"));
  EXPECT_THAT(program.synchronized(), HasSubstr("make room"));
}

}  // namespace
}  // namespace lanternfold
