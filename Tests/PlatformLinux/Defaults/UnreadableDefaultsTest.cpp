// Databases that cannot be read for a while, and the counters that are remembered in them.
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/syscall.h>

#include "NetworkMonitor/Metrics/UserDefaultsConnectionMetricsStorage.h"
#include "Tests/PlatformLinux/ChildProcess.h"
#include "Tests/PlatformLinux/Defaults/DefaultsFixture.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"
#include "Tests/PlatformLinux/RefusedCall.h"
#include "Tests/Support/SampleConnectionMetrics.h"
#include "Tests/Support/SimulatedClock.h"

namespace lanternfold {
namespace {

using testing::HasSubstr;
using Type = ConnectionMetricsType;

constexpr ConnectionMetrics later{.sentBytes = 100, .mtu = 8};

/// One that remembers counters.
struct RememberingProgram : DefaultsProgram {
  using DefaultsProgram::DefaultsProgram;

  SimulatedClock clock;
  UserDefaultsConnectionMetricsStorage storage{{.clock = clock, .log = log}, defaults};

  [[nodiscard]] ConnectionMetricsMap all() { return storage.allMetrics(Type::original); }
  /// Why it cannot be saved, or nothing.
  [[nodiscard]] std::string saved() {
    const auto done = storage.save();
    return done ? "" : done.error().sentence;
  }
};

class UnreadableDefaultsTest : public DefaultsFixture {
 protected:
  const ConnectionMetricsMap history_ =
      ConnectionMetricsMap::of({{"en0", oneToEight}, {"en1", oneToEight}});

  /// What a program that has ended left.
  void rememberHistory() const {
    RememberingProgram program(data());
    program.storage.registerMetrics(oneToEight, "en0", Type::original);
    program.storage.registerMetrics(oneToEight, "en1", Type::original);
    EXPECT_EQ(program.saved(), "");
  }
  /// A program that begins while the database cannot be opened; `mend` lets it be opened again.
  void expectHistoryOutlives(const std::function<void()>& mend, std::string_view reason) const {
    {
      RememberingProgram program(data());
      program.storage.registerMetrics(later, "en0", Type::original);
      EXPECT_TRUE(program.all().empty());
      EXPECT_THAT(program.saved(), HasSubstr(reason));
      mend();
      EXPECT_EQ(program.saved(), "");
      EXPECT_EQ(program.all(), history_);
      program.storage.registerMetrics(later, "en0", Type::original);
      EXPECT_EQ(program.saved(), "");
      EXPECT_EQ(program.log.lines(), std::vector<std::string>{});
    }
    EXPECT_EQ(RememberingProgram(data()).all(),
              ConnectionMetricsMap::of({{"en0", later}, {"en1", oneToEight}}));
  }
};

TEST_F(UnreadableDefaultsTest, ADatabaseThatAnotherProgramOpensDoesNotLoseTheHistory) {
  rememberHistory();
  std::optional<FileDescriptor> opener = keepFromOpening(database());
  expectHistoryOutlives([&] { opener.reset(); }, "locked");
}

TEST_F(UnreadableDefaultsTest, ADatabaseOfAProgramWithTooManyOpenFilesDoesNotLoseTheHistory) {
  ChildProcess child([this] {
    rememberHistory();
    rlimit allowed{};
    ::getrlimit(RLIMIT_NOFILE, &allowed);
    const rlimit none{.rlim_cur = 0, .rlim_max = allowed.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &none);
    expectHistoryOutlives([&] { ::setrlimit(RLIMIT_NOFILE, &allowed); }, "Too many open files");
    return HasFailure() ? 1 : 0;
  });
  EXPECT_EQ(child.wait(), 0);
}

TEST_F(UnreadableDefaultsTest, AReadThatFailsInAnOpenDatabaseIsNoEmptyAnswer) {
  ChildProcess child([this] {
    const DefaultsProgram program(data());
    const DefaultsProgram other(data());
    program.defaults->set("key", "first");
    // Makes the program forget the pages that it has read.
    other.defaults->set("key", "second");
    if (!RefusedCall{.number = SYS_pread64, .error = EIO, .thirdArgumentBits = {}}.install()) {
      return 255;
    }
    return program.unread("key").contains("cannot be read: disk I/O error") ? 0 : 1;
  });
  EXPECT_EQ(child.wait(), 0);
}

using UnreadableDefaultsInNamespaceTest = UnreadableDefaultsTest;

TEST_F(UnreadableDefaultsInNamespaceTest, ADatabaseOnAFullDiskDoesNotLoseTheHistory) {
  std::unique_ptr<NetworkNamespace> inside;
  ENTER_NETWORK_NAMESPACE(inside);
  ASSERT_EQ(::mount("tmpfs", folder_.path().c_str(), "tmpfs", 0, "size=128k,mode=0700"), 0);
  rememberHistory();
  folder_.write("filler", std::string(200'000, 'x'));
  expectHistoryOutlives([&] { std::filesystem::remove(folder_ / "filler"); }, "disk I/O error");
}

}  // namespace
}  // namespace lanternfold
