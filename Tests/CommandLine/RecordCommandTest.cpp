// `record` as a user meets it, over a machine of fakes: lines and exit status out, a file kept.
#include <cstdlib>
#include <ctime>
#include <sstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "CommandLine/Program.h"
#include "Tests/CommandLine/FakeMachine.h"
#include "Wiring/DataOptions.h"

namespace lanternfold {
namespace {

using namespace std::chrono_literals;
using Json = nlohmann::json;

const std::filesystem::path groupFolder =
    std::filesystem::path("/containers/groups") / defaultAppGroupId;
const std::filesystem::path file = groupFolder / "connection-metrics-storage_default.json";
const std::filesystem::path lockFile = groupFolder / "connection-metrics-storage_default.lock";

class RecordCommandTest : public testing::Test {
 protected:
  void SetUp() override {
    ::setenv("TZ", "UTC", 1);
    ::tzset();
    fake_.addEthernet("en0", {192, 168, 1, 20});
  }
  void TearDown() override {
    ::unsetenv("TZ");
    ::tzset();
  }

  ExitStatus run(const std::vector<std::string>& arguments) {
    output_.str({});
    errors_.str({});
    return runProgram(arguments, {.output = output_, .errors = errors_},
                      [this](const MachineOptions&) -> const Machine& { return fake_.machine; });
  }
  std::vector<std::string> lines() const {
    std::vector<std::string> result;
    std::istringstream stream(output_.str());
    for (std::string line; std::getline(stream, line);) result.push_back(line);
    return result;
  }
  /// What en0 has received so far, of the adjusted counters in the file.
  std::uint64_t recordedBytes() const {
    const auto document = Json::parse(fake_.fileSystem.bytes(file).value_or("[]"));
    for (std::size_t position = 0; position + 1 < document.size(); position += 2) {
      if (document[position] == 1) return document[position + 1]["en0"]["recvBytes"];
    }
    return 0;
  }
  /// en0 receives that much a second from now on.
  void receive(std::uint64_t bytesPerSecond) {
    fake_.dispatch.mainQueue().after(1s, [this, bytesPerSecond] {
      received_ += bytesPerSecond;
      fake_.kernel.setCounters("en0", {.recvBytes = received_, .sentBytes = 2'000});
      receive(bytesPerSecond);
    });
  }

  FakeMachine fake_;
  std::ostringstream output_;
  std::ostringstream errors_;
  std::uint64_t received_ = 1'500'000;
};

TEST_F(RecordCommandTest, OnceShowsATableAndKeepsTheSample) {
  EXPECT_EQ(run({"record", "--once"}), ExitStatus::done);
  EXPECT_EQ(output_.str(),
            "Name  Received  Sent  Packets in  Packets out   MTU\n"
            "en0     1.5 MB  2 KB           0            0  1500\n");
  EXPECT_EQ(recordedBytes(), 1'500'000U);
  EXPECT_FALSE(fake_.fileSystem.bytes(lockFile));
}

TEST_F(RecordCommandTest, OnceAsJsonIsTheAdjustedCountersByName) {
  EXPECT_EQ(run({"record", "--once", "--json"}), ExitStatus::done);
  EXPECT_EQ(output_.str(), R"({"en0":{"sentBytes":2000,"recvBytes":1500000,"sentError":0,)"
                           R"("recvError":0,"sentPacket":0,"recvPacket":0,"collisions":0,)"
                           R"("mtu":1500}})"
                           "\n");
}

TEST_F(RecordCommandTest, SamplesAtOnceAndThenEveryTwoMinutesWhileIdle) {
  EXPECT_EQ(run({"record"}), ExitStatus::done);
  const auto all = lines();
  ASSERT_EQ(all.size(), 1U + 31U) << "the hour after which this loop is interrupted";
  EXPECT_EQ(all[0], "Recording into " + groupFolder.string() + " until interrupted.");
  EXPECT_EQ(all[1],
            "2024-01-01 00:00:00  idle       next in 120 s  en0 received 1.5 MB, sent 2 KB so far");
  EXPECT_EQ(all[2], "2024-01-01 00:02:00  idle       next in 120 s  no traffic");
}

TEST_F(RecordCommandTest, AdaptsTheIntervalToTheTraffic) {
  receive(40'000'000);
  EXPECT_EQ(run({"record", "--json"}), ExitStatus::done);
  const auto all = lines();
  const auto first = Json::parse(all[0]);
  EXPECT_EQ(first["date"], "2024-01-01T00:00:00.000Z");
  EXPECT_EQ(first["bandwidthClass"], "idle");
  EXPECT_EQ(first["intervalSeconds"], 120);
  const auto second = Json::parse(all[1]);
  EXPECT_EQ(second["date"], "2024-01-01T00:02:00.000Z");
  EXPECT_EQ(second["bandwidthClass"], "veryHigh");
  EXPECT_EQ(second["intervalSeconds"], 15) << "the interval that follows from this very sample";
  EXPECT_EQ(Json::parse(all[2])["date"], "2024-01-01T00:02:15.000Z");
}

TEST_F(RecordCommandTest, AnIntervalOfTheUsersHoldsUntilTheClassChanges) {
  EXPECT_EQ(run({"record", "--json", "--interval", "1200"}), ExitStatus::done);
  EXPECT_EQ(lines().size(), 4U);
  EXPECT_EQ(Json::parse(lines()[0])["intervalSeconds"], 1200);
}

TEST_F(RecordCommandTest, ALineHoldsTheInterfacesOfItsSampleOnly) {
  EXPECT_EQ(run({"record", "--once"}), ExitStatus::done);
  fake_.kernel.removeLink("en0");
  fake_.addEthernet("en1", {192, 168, 1, 21});
  EXPECT_EQ(run({"record", "--json", "--interval", "1200"}), ExitStatus::done);
  EXPECT_TRUE(Json::parse(lines()[0])["metrics"].contains("en1"));
  EXPECT_FALSE(Json::parse(lines()[0])["metrics"].contains("en0"));
  EXPECT_EQ(recordedBytes(), 1'500'000U) << "the file remembers what is absent";
}

TEST_F(RecordCommandTest, ASampleThatCannotBeSavedIsSaidAndTheScheduleGoesOn) {
  fake_.fileSystem.setFreeBytes(0);
  fake_.dispatch.mainQueue().after(300s, [this] { fake_.fileSystem.setFreeBytes(std::nullopt); });
  EXPECT_EQ(run({"record", "--json", "--interval", "120"}), ExitStatus::done);
  ASSERT_EQ(fake_.diagnostics.lines().size(), 3U) << "at 0, 120 and 240 seconds";
  for (const std::string& line : fake_.diagnostics.lines()) {
    EXPECT_THAT(line, testing::StartsWith("Failed to save storage: "));
  }
  EXPECT_EQ(Json::parse(lines()[0])["date"], "2024-01-01T00:06:00.000Z");
}

TEST_F(RecordCommandTest, OnceFailsInOneSentenceWhenTheSampleCannotBeSaved) {
  fake_.fileSystem.setFreeBytes(0);
  EXPECT_EQ(run({"record", "--once", "--json"}), ExitStatus::failed);
  EXPECT_EQ(output_.str(), "");
  EXPECT_THAT(errors_.str(),
              testing::AllOf(testing::StartsWith("lanternfold-widgets: cannot record this "
                                                 "machine's traffic: "),
                             testing::HasSubstr("No space left on device")));
  EXPECT_EQ(std::ranges::count(errors_.str(), '\n'), 1);
}

TEST_F(RecordCommandTest, OnceFailsWhenTheLockStaysTakenAndSaysWhatToDo) {
  fake_.fileSystem.putFile(lockFile, "31525416000.00000000");
  const auto begin = fake_.clock.steadyNow();
  EXPECT_EQ(run({"record", "--once"}), ExitStatus::failed);
  EXPECT_LE(fake_.clock.steadyNow() - begin, 600ms);
  EXPECT_THAT(errors_.str(), testing::HasSubstr("remove " + lockFile.string()));
}

TEST_F(RecordCommandTest, ARunningRecorderSaysWhichLockStaysTakenAndWhatToDo) {
  fake_.fileSystem.putFile(lockFile, "31525416000.00000000");
  EXPECT_EQ(run({"record", "--json", "--interval", "1800"}), ExitStatus::done);
  const std::string line =
      "Failed to save storage: another program kept the lock for longer than was waited; if that "
      "goes on, remove " +
      lockFile.string();
  EXPECT_EQ(fake_.diagnostics.lines(), std::vector<std::string>(3, line));
}

TEST_F(RecordCommandTest, AFolderInTheFilesPlaceIsToBeMovedAway) {
  fake_.fileSystem.makeFolder(file);
  EXPECT_EQ(run({"record", "--once"}), ExitStatus::failed);
  EXPECT_THAT(errors_.str(),
              testing::HasSubstr(file.string() + " could not be written: Is a directory; move that "
                                                 "folder away, since a file belongs there\n"));
}

TEST_F(RecordCommandTest, AGroupWithoutAFolderIsSaidWithTheFolderThatIsUsed) {
  fake_.groupContainer.setRefusingGroups(true);
  EXPECT_EQ(run({"record", "--once"}), ExitStatus::done);
  EXPECT_EQ(
      fake_.diagnostics.lines(),
      std::vector<std::string>{
          "Traffic is kept in /containers/metrics, where groups do not see it: cannot make the "
          "folder \"" +
          groupFolder.string() + "\": Read-only file system; choose another one"});
}

TEST_F(RecordCommandTest, OnceFailsWhenTheKernelRefuses) {
  using Table = FakeNetworkKernel::Table;
  for (const Table table : {Table::addressEntries, Table::linkRecords}) {
    fake_.kernel.fail(table, NetworkKernelError::refused);
  }
  EXPECT_EQ(run({"record", "--once"}), ExitStatus::failed);
  EXPECT_THAT(errors_.str(), testing::HasSubstr("the kernel refused the request; allow"));
}

TEST_F(RecordCommandTest, WithoutAPlaceToRecordToItIsAFailure) {
  fake_.groupContainer.setRefusing(true);
  for (const char* option : {"--once", "--json"}) {
    EXPECT_EQ(run({"record", option}), ExitStatus::failed);
    EXPECT_EQ(output_.str(), "");
    EXPECT_EQ(errors_.str(),
              "lanternfold-widgets: cannot record this machine's traffic: cannot make "
              "the folder \"" +
                  groupFolder.string() + "\": Read-only file system; choose another one\n");
    EXPECT_EQ(fake_.diagnostics.lines(), std::vector<std::string>{});
  }
}

TEST_F(RecordCommandTest, ASecondRecorderSaysSoAndIsDone) {
  fake_.soleRecorder.takeByAnother(groupFolder);
  EXPECT_EQ(run({"record"}), ExitStatus::done);
  EXPECT_EQ(output_.str(), "");
  EXPECT_EQ(fake_.diagnostics.lines(),
            std::vector<std::string>{"Another recorder keeps the traffic in " +
                                     groupFolder.string() + " already; nothing is left to do."});
  EXPECT_FALSE(fake_.fileSystem.bytes(file));
}

TEST_F(RecordCommandTest, OnceAndTheStateDoNotMindARecorder) {
  fake_.soleRecorder.takeByAnother(groupFolder);
  EXPECT_EQ(run({"record", "--once"}), ExitStatus::done);
  EXPECT_EQ(run({"state"}), ExitStatus::done);
  EXPECT_EQ(fake_.diagnostics.lines(), std::vector<std::string>{});
}

TEST_F(RecordCommandTest, TheClaimEndsWithTheRecorder) {
  EXPECT_EQ(run({"record"}), ExitStatus::done);
  EXPECT_FALSE(fake_.soleRecorder.isTaken(groupFolder));
}

TEST_F(RecordCommandTest, AClaimThatCannotBeMadeIsAFailure) {
  fake_.soleRecorder.failWith(std::errc::permission_denied);
  EXPECT_EQ(run({"record"}), ExitStatus::failed);
  EXPECT_EQ(
      errors_.str(),
      "lanternfold-widgets: cannot record this machine's traffic: " +
          (groupFolder / "connection-metrics-storage_default.recorder").string() +
          " could not be written: Permission denied; check the permissions of the file and its "
          "folder, or choose another folder with --data-dir\n");
}

TEST_F(RecordCommandTest, EndsWhenNobodyReadsTheOutputAnyMore) {
  const auto begin = fake_.clock.steadyNow();
  output_.setstate(std::ios::badbit);
  EXPECT_EQ(run({"record", "--json"}), ExitStatus::failed);
  EXPECT_LT(fake_.clock.steadyNow() - begin, 1min);
  EXPECT_THAT(errors_.str(), testing::HasSubstr("cannot write to standard output"));
}

TEST_F(RecordCommandTest, AGroupHasItsFolderAndNoGroupTheCommonOne) {
  EXPECT_EQ(run({"record", "--once", "--app-group", "9.example"}), ExitStatus::done);
  EXPECT_TRUE(fake_.fileSystem.bytes(
      "/containers/groups/9.example/connection-metrics-storage_default.json"));
  EXPECT_EQ(run({"record", "--once", "--no-app-group"}), ExitStatus::done);
  EXPECT_TRUE(
      fake_.fileSystem.bytes("/containers/metrics/connection-metrics-storage_default.json"));
  EXPECT_FALSE(fake_.fileSystem.bytes(file));
}

TEST_F(RecordCommandTest, TheStateIsRecordedOnceAWalk) {
  fake_.addEthernet("en1", {192, 168, 1, 21});
  EXPECT_EQ(run({"state", "--json"}), ExitStatus::done);
  EXPECT_EQ(recordedBytes(), 1'500'000U);
  const auto stepsOfTwo = fake_.fileSystem.stepCount();
  for (int number = 2; number < 50; ++number) {
    fake_.addEthernet("en" + std::to_string(number),
                      {10, 0, 0, static_cast<unsigned char>(number)});
  }
  fake_.dispatch.advance(10s);
  EXPECT_EQ(run({"state", "--json"}), ExitStatus::done);
  EXPECT_EQ(Json::parse(output_.str())["state"]["others"].size(), 50U);
  EXPECT_LT(fake_.fileSystem.stepCount() - stepsOfTwo, 10 * stepsOfTwo)
      << "as if every interface were a sample of its own";
}

TEST_F(RecordCommandTest, AStateThatCannotBeRecordedIsShownAllTheSame) {
  EXPECT_EQ(run({"state", "--json"}), ExitStatus::done);
  const std::string shown = output_.str();
  fake_.dispatch.advance(10s);
  fake_.fileSystem.setFreeBytes(0);
  EXPECT_EQ(run({"state", "--json"}), ExitStatus::done);
  EXPECT_EQ(output_.str(), shown);
  ASSERT_EQ(fake_.diagnostics.lines().size(), 1U);
  EXPECT_THAT(fake_.diagnostics.lines()[0],
              testing::AllOf(testing::StartsWith("Traffic is shown but not recorded: "),
                             testing::HasSubstr("No space left on device")));
}

TEST_F(RecordCommandTest, AStateWithoutAFolderIsShownAllTheSame) {
  fake_.groupContainer.setRefusing(true);
  EXPECT_EQ(run({"state", "--json"}), ExitStatus::done);
  EXPECT_EQ(Json::parse(output_.str())["state"]["others"].size(), 1U);
  EXPECT_EQ(fake_.diagnostics.lines(),
            std::vector<std::string>{
                "Traffic is shown but not recorded: cannot make the folder \"" +
                groupFolder.string() + "\": Read-only file system; choose another one"});
}

TEST_F(RecordCommandTest, InterfacesTouchesNoFile) {
  EXPECT_EQ(run({"interfaces"}), ExitStatus::done);
  EXPECT_EQ(fake_.fileSystem.stepCount(), 0U);
}

}  // namespace
}  // namespace lanternfold
