// A replacement that fails at every step, and one that is killed.
#include <fcntl.h>
#include <random>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

#include "PlatformLinux/System/AtomicReplacement.h"
#include "Tests/PlatformLinux/ChildProcess.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"
#include "Tests/PlatformLinux/RefusedCall.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

using Names = std::set<std::string>;

constexpr mode_t mode = 0600;
constexpr RefusedCall noUnnamedFiles{
    .number = SYS_openat, .error = EOPNOTSUPP, .thirdArgumentBits = O_TMPFILE};

class AtomicReplacementTest : public testing::Test {
 protected:
  void SetUp() override { folder_.write("a.json", "old"); }

  [[nodiscard]] std::filesystem::path file() const { return folder_ / "a.json"; }

  /// What a replacement ends with when these calls are refused: an error's number, or 0.
  [[nodiscard]] int replaceRefusing(const std::vector<RefusedCall>& calls) const {
    ChildProcess child([&] {
      for (const RefusedCall& call : calls) {
        if (!call.install()) return 255;
      }
      const auto replaced = replaceFileAtomically(file(), "new", mode);
      return replaced ? 0 : replaced.error().value();
    });
    return child.wait();
  }

  TemporaryFolder folder_;
};

TEST_F(AtomicReplacementTest, WorksWhereFilesCannotBeWithoutAName) {
  EXPECT_EQ(replaceRefusing({noUnnamedFiles}), 0);
  EXPECT_EQ(folder_.bytesOf("a.json"), "new");
  EXPECT_EQ(folder_.names(), Names{"a.json"});
}

TEST_F(AtomicReplacementTest, WorksWhereAnUnnamedFileCannotBeNamed) {
  EXPECT_EQ(replaceRefusing({{.number = SYS_linkat, .error = ENOENT}}), 0);
  EXPECT_EQ(folder_.bytesOf("a.json"), "new");
  EXPECT_EQ(folder_.names(), Names{"a.json"});
}

struct FailingStep {
  const char* name;
  unsigned call;
  unsigned error;
};

class FailingStepTest : public AtomicReplacementTest,
                        public testing::WithParamInterface<FailingStep> {};

TEST_P(FailingStepTest, LeavesTheOldFileAndNothingElse) {
  const RefusedCall refused{.number = GetParam().call, .error = GetParam().error};
  EXPECT_EQ(replaceRefusing({refused}), static_cast<int>(GetParam().error));
  EXPECT_EQ(folder_.bytesOf("a.json"), "old");
  EXPECT_EQ(folder_.names(), Names{"a.json"});
}

TEST_P(FailingStepTest, LeavesTheOldFileAndNothingElseWhereFilesNeedAName) {
  const RefusedCall refused{.number = GetParam().call, .error = GetParam().error};
  EXPECT_EQ(replaceRefusing({noUnnamedFiles, refused}), static_cast<int>(GetParam().error));
  EXPECT_EQ(folder_.bytesOf("a.json"), "old");
  EXPECT_EQ(folder_.names(), Names{"a.json"});
}

INSTANTIATE_TEST_SUITE_P(Steps, FailingStepTest,
                         testing::Values(FailingStep{"open", SYS_openat, EMFILE},
                                         FailingStep{"write", SYS_write, ENOSPC},
                                         FailingStep{"permissions", SYS_fchmod, EPERM},
                                         FailingStep{"fsync", SYS_fsync, EIO},
                                         FailingStep{"rename", SYS_renameat, EACCES}),
                         [](const auto& step) { return std::string(step.param.name); });

class LeftoverTest : public AtomicReplacementTest {
 protected:
  /// The name of what a process leaves that is killed just before it moves the file.
  [[nodiscard]] std::string leaveOne() const {
    ChildProcess child([&] {
      // Neither the move nor the tidying up after its failure.
      const RefusedCall move{.number = SYS_renameat, .error = EIO};
      const RefusedCall unlink{.number = SYS_unlinkat, .error = EIO};
      if (!move.install() || !unlink.install()) return 255;
      return replaceFileAtomically(file(), "new", mode) ? 1 : 0;
    });
    EXPECT_EQ(child.wait(), 0);
    for (const std::string& name : folder_.names()) {
      if (name.starts_with(".lanternfold-")) return name;
    }
    return {};
  }
  void makeOld(const std::string& name) const {
    const auto hourAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
    std::filesystem::last_write_time(folder_ / name, hourAgo);
  }
  void replaceOnce() const { EXPECT_TRUE(replaceFileAtomically(file(), "newer", mode)); }
};

TEST_F(LeftoverTest, OfAKilledProcessIsRemovedByTheNextReplacement) {
  const std::string name = leaveOne();
  ASSERT_FALSE(name.empty());
  makeOld(name);
  replaceOnce();
  EXPECT_EQ(folder_.names(), Names{"a.json"});
}

TEST_F(LeftoverTest, AYoungOneMayBelongToALivingProcessAndStays) {
  const std::string name = leaveOne();
  ASSERT_FALSE(name.empty());
  replaceOnce();
  EXPECT_EQ(folder_.names(), (Names{"a.json", name}));
}

TEST_F(LeftoverTest, OfAnotherFileStays) {
  const std::string name = leaveOne();
  ASSERT_FALSE(name.empty());
  makeOld(name);
  EXPECT_TRUE(replaceFileAtomically(folder_ / "b.json", "x", mode));
  EXPECT_EQ(folder_.names(), (Names{"a.json", "b.json", name}));
}

TEST_F(LeftoverTest, WhatOnlyLooksLikeOneStays) {
  const std::string name = leaveOne();
  ASSERT_FALSE(name.empty());
  const std::string prefix = name.substr(0, name.size() - 16);
  std::filesystem::rename(folder_ / name, folder_ / (prefix + "0123456789abcdef.bak"));
  const Names kept = {prefix + "0123456789abcdef.bak", prefix + "0123456789ABCDEF", prefix + "1"};
  for (const std::string& each : kept) {
    folder_.write(each, "mine");
    makeOld(each);
  }
  std::filesystem::create_directory(folder_ / (prefix + "fedcba9876543210"));
  makeOld(prefix + "fedcba9876543210");
  replaceOnce();
  Names expected = kept;
  expected.insert({"a.json", prefix + "fedcba9876543210"});
  EXPECT_EQ(folder_.names(), expected);
}

TEST_F(AtomicReplacementTest, TwoWritersOfOneFileDoNotDisturbEachOther) {
  const auto writer = [&](char letter) {
    return [this, letter] {
      for (int count = 0; count < 100; ++count) {
        if (!replaceFileAtomically(file(), std::string(20'000, letter), mode)) return 1;
      }
      return 0;
    };
  };
  ChildProcess first(writer('a'));
  ChildProcess second(writer('b'));
  EXPECT_EQ(first.wait(), 0);
  EXPECT_EQ(second.wait(), 0);
  const std::string bytes = folder_.bytesOf("a.json");
  EXPECT_EQ(bytes, std::string(20'000, bytes.front()));
  EXPECT_EQ(folder_.names(), Names{"a.json"});
}

TEST_F(AtomicReplacementTest, AKilledWriterLeavesTheOldFileOrTheNewOne) {
  constexpr int kills = 200;
  std::mt19937 random(20'261'121);
  std::uniform_int_distribution<int> pause(0, 8000);
  folder_.write("a.json", std::string(100'000, 'a'));
  for (int kill = 0; kill < kills; ++kill) {
    ChildProcess child([&] {
      for (char letter = 'a';; letter = letter == 'z' ? 'a' : static_cast<char>(letter + 1)) {
        if (!replaceFileAtomically(file(), std::string(100'000, letter), mode)) return 1;
      }
    });
    std::this_thread::sleep_for(std::chrono::microseconds(pause(random)));
    ASSERT_EQ(child.kill(), 256 + SIGKILL);
    const std::string bytes = folder_.bytesOf("a.json");
    ASSERT_EQ(bytes.size(), 100'000U) << "after kill " << kill;
    ASSERT_EQ(bytes.find_first_not_of(bytes.front()), std::string::npos);
  }
  EXPECT_LE(folder_.names().size(), std::size_t{1 + kills});
}

TEST(AtomicReplacementInNamespaceTest, AFullDiskLeavesTheOldFileAndTheRoomOfTheNewOne) {
  TemporaryFolder folder;
  std::unique_ptr<NetworkNamespace> inside;
  ENTER_NETWORK_NAMESPACE(inside);
  ASSERT_EQ(::mount("tmpfs", folder.path().c_str(), "tmpfs", 0, "size=256k"), 0);
  const std::string big(150'000, 'x');
  ASSERT_TRUE(replaceFileAtomically(folder / "a.json", big, mode));
  for (int count = 0; count < 5; ++count) {
    const auto replaced = replaceFileAtomically(folder / "a.json", big, mode);
    ASSERT_FALSE(replaced);
    EXPECT_EQ(replaced.error(), std::errc::no_space_on_device);
    EXPECT_EQ(folder.bytesOf("a.json"), big);
    EXPECT_EQ(folder.names(), Names{"a.json"});
  }
  EXPECT_TRUE(replaceFileAtomically(folder / "a.json", big.substr(100'000), mode));
}

TEST(AtomicReplacementInNamespaceTest, AReadOnlyFileSystemSaysSo) {
  TemporaryFolder folder;
  std::unique_ptr<NetworkNamespace> inside;
  ENTER_NETWORK_NAMESPACE(inside);
  ASSERT_EQ(::mount("tmpfs", folder.path().c_str(), "tmpfs", MS_RDONLY, nullptr), 0);
  const auto replaced = replaceFileAtomically(folder / "a.json", "x", mode);
  ASSERT_FALSE(replaced);
  EXPECT_EQ(replaced.error(), std::errc::read_only_file_system);
}

}  // namespace
}  // namespace lanternfold
