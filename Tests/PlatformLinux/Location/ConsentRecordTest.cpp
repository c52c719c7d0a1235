// The consent in a file: over a file system that fails at any step, and over the real one.
#include <sys/stat.h>
#include <unistd.h>

#include "PlatformLinux/Location/ConsentRecord.h"
#include "PlatformLinux/System/PosixFileSystem.h"
#include "Tests/PlatformLinux/ChildProcess.h"
#include "Tests/PlatformLinux/NetworkNamespace.h"
#include "Tests/Support/FakeFileSystem.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr auto notDetermined = ConsentDecision::notDetermined;
constexpr auto denied = ConsentDecision::denied;
constexpr auto always = ConsentDecision::authorizedAlways;
constexpr auto inUse = ConsentDecision::authorizedWhenInUse;

class ConsentRecordTest : public testing::Test {
 protected:
  ConsentRecordTest() { files_.makeFolder("/data"); }

  static constexpr const char* file = "/data/location-consent";
  SimulatedClock clock_;
  FakeFileSystem files_{clock_};
  RecordingDiagnosticLog log_;
  std::expected<void, std::string> folder_;
  ConsentRecord record_{{.file = file,
                         .checkFolder = [this] { return folder_; },
                         .makeFolder = [this] { return folder_; }},
                        files_,
                        log_};
};

TEST_F(ConsentRecordTest, WithoutAFileNothingIsDetermined) {
  EXPECT_EQ(record_.decision(), notDetermined);
  EXPECT_THAT(log_.lines(), IsEmpty());
  EXPECT_THAT(files_.paths("/data"), IsEmpty());
}

TEST_F(ConsentRecordTest, WhatIsRecordedIsRead) {
  for (const auto decision : {always, denied, inUse, notDetermined, always}) {
    EXPECT_TRUE(record_.record(decision));
    EXPECT_EQ(record_.decision(), decision);
    EXPECT_EQ(files_.bytes(file), encodeConsent(decision));
  }
  EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(ConsentRecordTest, AFailureAtAnyStepLeavesTheOldDecisionOrTheNewOne) {
  for (std::size_t step = 0; step < 20; ++step) {
    files_.putFile(file, encodeConsent(denied));
    files_.failStep(step, std::errc::no_space_on_device);
    const std::size_t before = files_.stepCount();
    const auto recorded = record_.record(always);
    if (files_.stepCount() - before <= step) {
      EXPECT_GT(step, 5U);
      return;
    }
    const auto decision = record_.decision();
    EXPECT_TRUE(decision == denied || decision == always) << step;
    EXPECT_TRUE(!recorded || decision == always) << step;
  }
  FAIL() << "recording takes more steps than it should";
}

TEST_F(ConsentRecordTest, AFullDiskLeavesTheOldDecision) {
  EXPECT_TRUE(record_.record(denied));
  files_.setFreeBytes(3);
  EXPECT_EQ(record_.record(always).error().error, std::errc::no_space_on_device);
  EXPECT_EQ(record_.decision(), denied);
  EXPECT_THAT(files_.paths("/data"), ElementsAre(file));
}

TEST_F(ConsentRecordTest, ACrashAtAnyStepLeavesTheOldDecisionOrTheNewOne) {
  for (std::size_t step = 0; step < 20; ++step) {
    files_.putFile(file, encodeConsent(denied));
    files_.crashAtStep(step);
    (void)record_.record(always);
    if (!files_.hasCrashed()) {
      EXPECT_GT(step, 5U);
      return;
    }
    files_.restart();
    const auto decision = record_.decision();
    EXPECT_TRUE(decision == denied || decision == always) << step;
  }
  FAIL() << "recording takes more steps than it should";
}

TEST_F(ConsentRecordTest, ADamagedFileIsNotDeterminedAndKeptAside) {
  files_.putFile(file, "location-consent 1\nauthorizedAlw");
  EXPECT_EQ(record_.decision(), notDetermined);
  EXPECT_EQ(record_.decision(), notDetermined);
  EXPECT_EQ(files_.bytes("/data/location-consent.damaged-1"), "location-consent 1\nauthorizedAlw");
  EXPECT_THAT(log_.lines(),
              ElementsAre("the consent in \"/data/location-consent\" is damaged and counts as not "
                          "determined; it is kept as \"location-consent.damaged-1\""));
  EXPECT_TRUE(record_.record(inUse));
  EXPECT_EQ(record_.decision(), inUse);
  EXPECT_EQ(files_.bytes("/data/location-consent.damaged-1"), "location-consent 1\nauthorizedAlw");
}

TEST_F(ConsentRecordTest, ADamagedFileThatNobodyHasReadIsKeptAsideByItsReplacement) {
  files_.putFile(file, "");
  EXPECT_TRUE(record_.record(denied));
  EXPECT_EQ(files_.bytes("/data/location-consent.damaged-1"), "");
  EXPECT_EQ(record_.decision(), denied);
}

TEST_F(ConsentRecordTest, AFileTooLongIsDamaged) {
  files_.putFile(file, encodeConsent(always) + std::string(longestConsentText, '\n'));
  EXPECT_EQ(record_.decision(), notDetermined);
  EXPECT_TRUE(files_.bytes("/data/location-consent.damaged-1"));
}

TEST_F(ConsentRecordTest, ADamagedFileThatCannotBeKeptAsideIsNotDeterminedAllTheSame) {
  files_.putFile(file, "?");
  files_.denyWriting("/data");
  EXPECT_EQ(record_.decision(), notDetermined);
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("it could not be kept aside: ")));
}

TEST_F(ConsentRecordTest, WithTooManyDamagedFilesKeptTheLineSaysWhatToDo) {
  for (int number = 1; number <= 20; ++number) {
    files_.putFile("/data/location-consent.damaged-" + std::to_string(number), "older");
  }
  files_.putFile(file, "?");
  EXPECT_EQ(record_.decision(), notDetermined);
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("too many damaged ones are: remove some")));
  EXPECT_TRUE(record_.record(denied)) << "what shows fewer names is never refused";
}

TEST_F(ConsentRecordTest, DamageThatComesAgainIsToldAgain) {
  files_.putFile(file, "?");
  EXPECT_EQ(record_.decision(), notDetermined);
  EXPECT_TRUE(record_.record(always));
  EXPECT_EQ(record_.decision(), always);
  files_.putFile(file, "!");
  EXPECT_EQ(record_.decision(), notDetermined);
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("damaged-1"), HasSubstr("damaged-2")));
}

TEST_F(ConsentRecordTest, AFileOfALaterVersionIsLeftAlone) {
  files_.putFile(file, "location-consent 2\nauthorizedAlways\n");
  EXPECT_EQ(record_.decision(), notDetermined);
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("was written by a later version")));
  EXPECT_THAT(record_.record(denied).error().sentence, HasSubstr("remove the file"));
  EXPECT_EQ(files_.bytes(file), "location-consent 2\nauthorizedAlways\n");
  EXPECT_THAT(files_.paths("/data"), ElementsAre(file));
}

TEST_F(ConsentRecordTest, AFileThatCannotBeReadIsNotDeterminedAndSaidOnce) {
  files_.putFile(file, encodeConsent(always));
  files_.denyReading(file);
  EXPECT_EQ(record_.decision(), notDetermined);
  EXPECT_EQ(record_.decision(), notDetermined);
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("cannot be read: Permission denied; ")));
  files_.allowAll(file);
  EXPECT_EQ(record_.decision(), always);
}

TEST_F(ConsentRecordTest, SomethingElseInItsPlaceIsNotDeterminedAndStays) {
  files_.putSpecialFile(file);
  EXPECT_EQ(record_.decision(), notDetermined);
  EXPECT_EQ(record_.record(always).error().error, std::errc::invalid_argument);
  EXPECT_TRUE(files_.attributes(file));
}

TEST_F(ConsentRecordTest, AFolderThatIsRefusedHidesWhatStandsInIt) {
  files_.putFile(file, encodeConsent(always));
  folder_ = std::unexpected("the folder is no good; choose another");
  EXPECT_EQ(record_.decision(), notDetermined);
  EXPECT_EQ(record_.record(inUse).error().sentence, "the folder is no good; choose another");
  EXPECT_EQ(files_.bytes(file), encodeConsent(always));
  EXPECT_THAT(log_.lines(), ElementsAre("the consent to show Wi-Fi names cannot be read: the "
                                        "folder is no good; choose another"));
}

/// One program over the real file system.
struct Program {
  explicit Program(const fs::path& data) : directory(data) {}
  DataDirectory directory;
  PosixFileSystem files;
  RecordingDiagnosticLog log;
  ConsentRecord record{consentPlaceIn(directory), files, log};
};

class ConsentFileTest : public testing::Test {
 protected:
  [[nodiscard]] fs::path data() const { return folder_ / "data"; }
  [[nodiscard]] fs::path file() const { return data() / "location-consent"; }

  TemporaryFolder folder_;
};

TEST_F(ConsentFileTest, FolderAndFileAreTheUsersAlone) {
  Program program(data());
  EXPECT_TRUE(program.record.record(always));
  EXPECT_EQ(program.record.file(), file());
  EXPECT_EQ(fs::status(data()).permissions(), fs::perms(0700));
  EXPECT_EQ(fs::status(file()).permissions(), fs::perms(0600));
  EXPECT_EQ(Program(data()).record.decision(), always);
}

TEST_F(ConsentFileTest, AFolderThatOthersMayWriteIntoGivesNoConsent) {
  EXPECT_TRUE(Program(data()).record.record(always));
  fs::permissions(data(), fs::perms(0777));
  Program program(data());
  EXPECT_EQ(program.record.decision(), notDetermined);
  EXPECT_THAT(program.log.lines(), ElementsAre(HasSubstr("chmod go-w")));
  EXPECT_THAT(program.record.record(denied).error().sentence, HasSubstr("chmod go-w"));
}

TEST_F(ConsentFileTest, AFolderOfAnotherUserGivesNoConsent) {
  REQUIRE_ROOT("to give a folder away");
  EXPECT_TRUE(Program(data()).record.record(always));
  ASSERT_EQ(::chown(data().c_str(), 54'321, 54'321), 0);
  Program program(data());
  EXPECT_EQ(program.record.decision(), notDetermined);
  EXPECT_THAT(program.log.lines(), ElementsAre(HasSubstr("belongs to another user")));
  EXPECT_THAT(program.record.record(denied).error().sentence, HasSubstr("another user"));
}

TEST_F(ConsentFileTest, AFolderThatCannotBeWrittenToKeepsTheOldDecision) {
  REQUIRE_ROOT("to become another user");
  fs::permissions(folder_.path(), fs::perms(0777));
  ChildProcess child([this] {
    if (::setresuid(54'321, 54'321, 54'321) != 0) return 2;
    Program program(data());
    if (!program.record.record(denied)) return 3;
    fs::permissions(data(), fs::perms(0500));
    const auto recorded = program.record.record(always);
    const bool isRefused = !recorded && recorded.error().error == std::errc::permission_denied;
    const bool isOld = program.record.decision() == denied;
    fs::permissions(data(), fs::perms(0700));
    return isRefused && isOld ? 0 : 1;
  });
  EXPECT_EQ(child.wait(), 0);
}

TEST_F(ConsentFileTest, ManyWritersAtOnceNeverLeaveAReaderWithoutADecision) {
  EXPECT_TRUE(Program(data()).record.record(denied));
  constexpr int rounds = 50;
  const auto write = [this](ConsentDecision decision) {
    return [this, decision] {
      Program program(data());
      for (int round = 0; round < rounds; ++round) {
        if (!program.record.record(decision)) return 1;
      }
      return 0;
    };
  };
  ChildProcess first(write(always));
  ChildProcess second(write(inUse));
  ChildProcess third(write(denied));
  Program reader(data());
  for (int look = 0; look < 500; ++look) ASSERT_NE(reader.record.decision(), notDetermined);
  EXPECT_EQ(first.wait(), 0);
  EXPECT_EQ(second.wait(), 0);
  EXPECT_EQ(third.wait(), 0);
  EXPECT_NE(reader.record.decision(), notDetermined);
  EXPECT_THAT(reader.log.lines(), IsEmpty());
  EXPECT_EQ(fs::directory_iterator(data())->path(), file());
}

TEST_F(ConsentFileTest, ReadingMakesNoFolder) {
  Program program(data());
  EXPECT_EQ(program.record.decision(), notDetermined);
  EXPECT_THAT(folder_.names(), IsEmpty());
  EXPECT_THAT(program.log.lines(), IsEmpty());
}

TEST(ConsentRecordOfNobody, AUserWithoutAFolderHasDecidedNothing) {
  PosixFileSystem files;
  RecordingDiagnosticLog log;
  const auto refuse = []() -> std::expected<void, std::string> {
    return std::unexpected("this user has no home");
  };
  ConsentRecord record({.file = {}, .checkFolder = refuse, .makeFolder = refuse}, files, log);
  EXPECT_EQ(record.decision(), notDetermined);
  EXPECT_EQ(record.record(always).error().sentence, "this user has no home");
}

}  // namespace
}  // namespace lanternfold
