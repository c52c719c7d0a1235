// Changes of the consent by other processes and by hand, as a program that holds a manager hears of
// them.
#include <array>
#include <chrono>
#include <sys/resource.h>
#include <unistd.h>

#include "PlatformLinux/Location/LinuxLocationConsent.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/PosixFileSystem.h"
#include "Tests/PlatformLinux/ChildProcess.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A program that holds a manager. The test's thread is its main thread.
class WatchingProgram {
 public:
  explicit WatchingProgram(const fs::path& data) : directory_(data) {}

  /// The status that each call of the handler found.
  [[nodiscard]] const std::vector<std::int32_t>& seen() const { return seen_; }
  [[nodiscard]] const RecordingDiagnosticLog& log() const { return log_; }
  [[nodiscard]] EventLoop& loop() { return loop_; }
  [[nodiscard]] LocationManager& manager() { return *manager_; }
  [[nodiscard]] std::int32_t status() const { return consent_.authorizationStatus(); }

  /// Waits until so many calls came; false when it takes longer than any machine should need.
  [[nodiscard]] bool runUntilSeen(std::size_t count) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (seen_.size() < count && std::chrono::steady_clock::now() < limit) {
      static_cast<void>(
          dispatch_.runMainUntil(std::chrono::steady_clock::now() + std::chrono::milliseconds(2)));
    }
    return seen_.size() >= count;
  }
  void settle() {
    static_cast<void>(
        dispatch_.runMainUntil(std::chrono::steady_clock::now() + std::chrono::milliseconds(150)));
  }

 private:
  DataDirectory directory_;
  PosixFileSystem files_;
  RecordingDiagnosticLog log_;
  ConsentRecord record_{consentPlaceIn(directory_), files_, log_};
  std::vector<std::int32_t> seen_;
  EventLoop loop_;
  AsioDispatch dispatch_{loop_};
  LinuxLocationConsent consent_{record_, loop_, dispatch_, log_};
  std::unique_ptr<LocationManager> manager_ =
      consent_.makeLocationManager([this] { seen_.push_back(status()); });
};

/// As another program would; whether that succeeded.
bool record(const fs::path& data, ConsentDecision decision) {
  const DataDirectory directory(data);
  PosixFileSystem files;
  RecordingDiagnosticLog log;
  return ConsentRecord(consentPlaceIn(directory), files, log).record(decision).has_value();
}

class LinuxLocationConsentTest : public testing::Test {
 protected:
  [[nodiscard]] fs::path data() const { return folder_ / "home/share/data"; }
  [[nodiscard]] fs::path file() const { return data() / "location-consent"; }
  void decide(ConsentDecision decision) const { ASSERT_TRUE(record(data(), decision)); }

  TemporaryFolder folder_;
};

TEST_F(LinuxLocationConsentTest, ADecisionOfAnotherProcessIsHeardOf) {
  std::array<int, 2> gate{};
  ASSERT_EQ(::pipe(gate.data()), 0);
  ChildProcess other([&] {
    char byte = 0;
    if (::read(gate[0], &byte, 1) != 1) return 2;
    return record(data(), ConsentDecision::authorizedAlways) ? 0 : 1;
  });
  WatchingProgram program(data());
  EXPECT_EQ(::write(gate[1], "x", 1), 1);
  EXPECT_TRUE(program.runUntilSeen(1));
  EXPECT_EQ(other.wait(), 0);
  program.settle();
  EXPECT_THAT(program.seen(), ElementsAre(3));
  for (const int descriptor : gate) ::close(descriptor);
}

TEST_F(LinuxLocationConsentTest, EveryProcessThatHoldsAManagerHearsOfADecision) {
  std::array<int, 2> ready{};
  ASSERT_EQ(::pipe(ready.data()), 0);
  ChildProcess other([&] {
    WatchingProgram program(data());
    if (::write(ready[1], "x", 1) != 1) return 2;
    return program.runUntilSeen(1) && program.seen().back() == 2 ? 0 : 1;
  });
  WatchingProgram program(data());
  char byte = 0;
  ASSERT_EQ(::read(ready[0], &byte, 1), 1);
  decide(ConsentDecision::denied);
  EXPECT_TRUE(program.runUntilSeen(1));
  EXPECT_EQ(other.wait(), 0);
  EXPECT_THAT(program.seen(), ElementsAre(2));
  for (const int descriptor : ready) ::close(descriptor);
}

TEST_F(LinuxLocationConsentTest, AFileThatIsRemovedIsADecisionTakenBack) {
  decide(ConsentDecision::authorizedAlways);
  WatchingProgram program(data());
  fs::remove(file());
  EXPECT_TRUE(program.runUntilSeen(1));
  EXPECT_THAT(program.seen(), ElementsAre(0));
}

TEST_F(LinuxLocationConsentTest, AFolderThatIsRemovedAndMadeAgainIsFollowed) {
  decide(ConsentDecision::authorizedAlways);
  WatchingProgram program(data());
  fs::remove_all(folder_ / "home");
  ASSERT_TRUE(program.runUntilSeen(1));
  decide(ConsentDecision::denied);
  ASSERT_TRUE(program.runUntilSeen(2));
  decide(ConsentDecision::authorizedWhenInUse);
  ASSERT_TRUE(program.runUntilSeen(3));
  EXPECT_THAT(program.seen(), ElementsAre(0, 2, 4));
}

TEST_F(LinuxLocationConsentTest, AFolderThatIsMovedAwayFarAboveIsFollowed) {
  decide(ConsentDecision::authorizedAlways);
  WatchingProgram program(data());
  fs::rename(folder_ / "home", folder_ / "old");
  ASSERT_TRUE(program.runUntilSeen(1));
  ASSERT_TRUE(record(folder_ / "old/share/data", ConsentDecision::denied));
  program.settle();
  EXPECT_THAT(program.seen(), ElementsAre(0));
  EXPECT_FALSE(fs::exists(folder_ / "home"));
  fs::rename(folder_ / "old", folder_ / "home");
  ASSERT_TRUE(program.runUntilSeen(2));
  EXPECT_THAT(program.seen(), ElementsAre(0, 2));
}

TEST_F(LinuxLocationConsentTest, AFolderThatCanBeMadeLaterIsHeardOf) {
  fs::create_directories(folder_ / "home");
  folder_.write("home/share", "in the way");
  WatchingProgram program(data());
  EXPECT_EQ(program.status(), 0);
  fs::remove(folder_ / "home/share");
  decide(ConsentDecision::denied);
  ASSERT_TRUE(program.runUntilSeen(1));
  EXPECT_THAT(program.seen(), ElementsAre(2));
}

TEST_F(LinuxLocationConsentTest, AFileThatIsLinkedToIsHeardOfWhereItStands) {
  fs::create_directories(folder_ / "backup");
  decide(ConsentDecision::denied);
  fs::rename(file(), folder_ / "backup/consent");
  fs::create_symlink("../../../backup/consent", file());
  WatchingProgram program(data());
  EXPECT_EQ(program.status(), 2);
  decide(ConsentDecision::authorizedAlways);
  ASSERT_TRUE(program.runUntilSeen(1));
  EXPECT_EQ(folder_.bytesOf("backup/consent"), encodeConsent(ConsentDecision::authorizedAlways));
  fs::remove(folder_ / "backup/consent");
  ASSERT_TRUE(program.runUntilSeen(2));
  EXPECT_THAT(program.seen(), ElementsAre(3, 0));
}

TEST_F(LinuxLocationConsentTest, ALinkToAnotherFolderIsFollowed) {
  fs::create_directories(folder_ / "home");
  ASSERT_TRUE(record(folder_ / "first/data", ConsentDecision::denied));
  ASSERT_TRUE(record(folder_ / "second/data", ConsentDecision::authorizedAlways));
  fs::create_symlink("../first", folder_ / "home/share");
  WatchingProgram program(data());
  EXPECT_EQ(program.status(), 2);
  fs::create_symlink("../second", folder_ / "home/new");
  fs::rename(folder_ / "home/new", folder_ / "home/share");
  ASSERT_TRUE(program.runUntilSeen(1));
  EXPECT_THAT(program.seen(), ElementsAre(3));
}

TEST_F(LinuxLocationConsentTest, AFileThatIsWrittenInPlaceIsHeardOf) {
  decide(ConsentDecision::denied);
  WatchingProgram program(data());
  program.loop().runAndWait([] {});
  folder_.write("home/share/data/location-consent", "location-consent 1\nauthorizedAlways\n");
  ASSERT_TRUE(program.runUntilSeen(1));
  EXPECT_EQ(program.seen().back(), 3);
}

TEST_F(LinuxLocationConsentTest, AFolderThatOthersMayWriteIntoFromNowOnTakesTheConsentBack) {
  decide(ConsentDecision::authorizedAlways);
  WatchingProgram program(data());
  fs::permissions(data(), fs::perms(0777));
  ASSERT_TRUE(program.runUntilSeen(1));
  fs::permissions(data(), fs::perms(0700));
  ASSERT_TRUE(program.runUntilSeen(2));
  EXPECT_THAT(program.seen(), ElementsAre(0, 3));
}

TEST_F(LinuxLocationConsentTest, ADamagedFileIsOneChangeAndKeepingItAsideIsNone) {
  decide(ConsentDecision::authorizedAlways);
  WatchingProgram program(data());
  ASSERT_TRUE(PosixFileSystem().replaceFile(file(), "?"));
  ASSERT_TRUE(program.runUntilSeen(1));
  program.settle();
  EXPECT_THAT(program.seen(), ElementsAre(0));
  EXPECT_THAT(program.log().lines(), ElementsAre(HasSubstr("location-consent.damaged-1")));
}

TEST_F(LinuxLocationConsentTest, OtherFilesOfTheFolderAreNoChange) {
  decide(ConsentDecision::denied);
  WatchingProgram program(data());
  folder_.write("home/share/data/other", "1");
  fs::create_directories(data() / "metrics");
  fs::create_directories(folder_ / "home/other");
  program.settle();
  EXPECT_THAT(program.seen(), IsEmpty());
}

TEST_F(LinuxLocationConsentTest, ABurstOfReportsEndsWithTheLastDecision) {
  WatchingProgram program(data());
  program.loop().runAndWait([this] {
    for (int round = 0; round < 100; ++round) decide(ConsentDecision::denied);
    decide(ConsentDecision::authorizedAlways);
  });
  ASSERT_TRUE(program.runUntilSeen(1));
  program.settle();
  EXPECT_EQ(program.seen().back(), 3);
  EXPECT_LE(program.seen().size(), 2U);
}

TEST_F(LinuxLocationConsentTest, WithoutAHostARequestDoesNothing) {
  WatchingProgram program(data());
  program.manager().requestAlwaysAuthorization();
  program.manager().requestWhenInUseAuthorization();
  program.settle();
  EXPECT_THAT(program.seen(), IsEmpty());
  EXPECT_FALSE(fs::exists(file()));
}

TEST_F(LinuxLocationConsentTest, AHostHearsWhetherItIsForUseOnly) {
  const DataDirectory directory(data());
  PosixFileSystem files;
  RecordingDiagnosticLog log;
  const ConsentRecord consentRecord(consentPlaceIn(directory), files, log);
  EventLoop loop;
  AsioDispatch dispatch(loop);
  std::vector<bool> asked;
  LinuxLocationConsent consent(consentRecord, loop, dispatch, log,
                               [&asked](bool whenInUse) { asked.push_back(whenInUse); });
  const auto manager = consent.makeLocationManager(nullptr);
  manager->requestWhenInUseAuthorization();
  manager->requestAlwaysAuthorization();
  EXPECT_THAT(asked, ElementsAre(true, false));
}

TEST_F(LinuxLocationConsentTest, WhenTheKernelCannotBeListenedToALineSaysSo) {
  // No watch can be had: descriptors are at their limit when the manager begins.
  ChildProcess child([this] {
    const DataDirectory directory(data());
    PosixFileSystem files;
    RecordingDiagnosticLog log;
    ConsentRecord consentRecord(consentPlaceIn(directory), files, log);
    EventLoop loop;
    AsioDispatch dispatch(loop);
    LinuxLocationConsent consent(consentRecord, loop, dispatch, log);
    rlimit none{};
    if (!consentRecord.record(ConsentDecision::denied) || getrlimit(RLIMIT_NOFILE, &none) != 0) {
      return 2;
    }
    none.rlim_cur = 3;
    if (setrlimit(RLIMIT_NOFILE, &none) != 0) return 2;
    auto manager = consent.makeLocationManager([] {});
    loop.runAndWait([] {});
    manager.reset();
    int lines = 0;
    for (const std::string& line : log.lines()) lines += line.contains("are not noticed until");
    return lines == 1 ? 0 : 1;
  });
  EXPECT_EQ(child.wait(), 0);
}

}  // namespace
}  // namespace lanternfold
