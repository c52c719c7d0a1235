// `location` as a user meets it: lines and exit status, over a machine of fakes and over this one
// with a data folder of the test's own.
#include <sstream>

#include <gtest/gtest.h>

#include "CommandLine/Program.h"
#include "Tests/CommandLine/FakeMachine.h"
#include "Tests/Support/TemporaryFolder.h"
#include "Wiring/LinuxMachine.h"

namespace lanternfold {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

class LocationCommandTest : public testing::Test {
 protected:
  ExitStatus run(std::vector<std::string> arguments) {
    output_.str({});
    errors_.str({});
    arguments.insert(arguments.begin(), "location");
    return runProgram(arguments, {.output = output_, .errors = errors_},
                      [this](const MachineOptions& options) -> const Machine& {
                        options_ = options;
                        return fake_.machine;
                      });
  }
  /// What is written by a command that must succeed.
  std::string written(const std::vector<std::string>& arguments) {
    EXPECT_EQ(run(arguments), ExitStatus::done);
    EXPECT_EQ(errors_.str(), "");
    return output_.str();
  }
  /// One line, and what is in it.
  void expectFailure(ExitStatus status, const std::vector<std::string>& arguments,
                     const std::string& text) {
    EXPECT_EQ(run(arguments), status);
    EXPECT_EQ(output_.str(), "");
    EXPECT_THAT(errors_.str(), MatchesRegex("lanternfold-widgets: [^\n]+\n"));
    EXPECT_THAT(errors_.str(), HasSubstr(text));
  }
  [[nodiscard]] std::optional<std::string> recorded() const {
    return fake_.fileSystem.bytes("/data/location-consent");
  }

  FakeMachine fake_;
  MachineOptions options_;
  std::ostringstream output_;
  std::ostringstream errors_;
};

TEST_F(LocationCommandTest, StatusIsTheNameOfTheCase) {
  const std::vector<std::string> names = {
      "notDetermined\n",    "restricted\n",          "denied\n",
      "authorizedAlways\n", "authorizedWhenInUse\n", "unknown\n"};
  for (std::int32_t status = 0; status < 6; ++status) {
    fake_.locationConsent.setAuthorizationStatus(status);
    EXPECT_EQ(written({"status"}), names.at(static_cast<std::size_t>(status)));
  }
}

TEST_F(LocationCommandTest, StatusAsJsonHasTheRawValueToo) {
  EXPECT_EQ(written({"status", "--json"}), "{\"status\":\"notDetermined\",\"rawValue\":0}\n");
  EXPECT_EQ(options_.diagnostics, DiagnosticsTarget::standardError);
  fake_.locationConsent.setAuthorizationStatus(4);
  EXPECT_EQ(written({"--json", "status"}), "{\"status\":\"authorizedWhenInUse\",\"rawValue\":4}\n");
  fake_.locationConsent.setAuthorizationStatus(7);
  EXPECT_EQ(written({"status", "--json"}), "{\"status\":\"unknown\",\"rawValue\":-1}\n");
}

TEST_F(LocationCommandTest, StatusAsksNobodyAndRecordsNothing) {
  (void)written({"status"});
  EXPECT_EQ(fake_.locationConsent.managersMade(), 0U);
  EXPECT_THAT(fake_.fileSystem.paths(), IsEmpty());
}

TEST_F(LocationCommandTest, AllowRecordsThatNamesAreAlwaysShown) {
  EXPECT_EQ(written({"allow"}), "Wi-Fi names are shown from now on.\n");
  EXPECT_EQ(recorded(), "location-consent 1\nauthorizedAlways\n");
}

TEST_F(LocationCommandTest, AllowInUseRecordsThat) {
  EXPECT_EQ(written({"allow-in-use"}),
            "Wi-Fi names are shown from now on while they are in use.\n");
  EXPECT_EQ(recorded(), "location-consent 1\nauthorizedWhenInUse\n");
}

TEST_F(LocationCommandTest, DenyRecordsThatNamesAreNotShown) {
  EXPECT_EQ(written({"deny"}), "Wi-Fi names are not shown from now on.\n");
  EXPECT_EQ(recorded(), "location-consent 1\ndenied\n");
}

TEST_F(LocationCommandTest, ResetTakesTheDecisionBack) {
  (void)written({"allow"});
  EXPECT_EQ(written({"reset"}),
            "Nothing is decided any more; Wi-Fi names are not shown until it is.\n");
  EXPECT_EQ(recorded(), "location-consent 1\nnotDetermined\n");
}

TEST_F(LocationCommandTest, AFullDiskIsAFailureAndTheFormerDecisionStands) {
  (void)written({"deny"});
  fake_.fileSystem.setFreeBytes(0);
  expectFailure(ExitStatus::failed, {"allow"},
                "/data/location-consent could not be written: No space left on device; make room");
  EXPECT_EQ(recorded(), "location-consent 1\ndenied\n");
}

TEST_F(LocationCommandTest, AFolderWithoutTheRightToWriteIsAFailure) {
  fake_.fileSystem.makeFolder("/data");
  fake_.fileSystem.denyWriting("/data");
  expectFailure(ExitStatus::failed, {"deny"}, "check the permissions of the file and its folder");
}

TEST_F(LocationCommandTest, AFolderInThePlaceOfTheFileIsAFailure) {
  fake_.fileSystem.makeFolder("/data/location-consent");
  expectFailure(ExitStatus::failed, {"deny"}, "move that folder away");
}

TEST_F(LocationCommandTest, AFileOfALaterVersionIsAFailure) {
  fake_.fileSystem.putFile("/data/location-consent", "location-consent 2\ndenied\n");
  expectFailure(ExitStatus::failed, {"allow"}, "was written by a later version");
  EXPECT_EQ(recorded(), "location-consent 2\ndenied\n");
}

TEST_F(LocationCommandTest, ADamagedFileIsKeptAsideWhenTheUserDecides) {
  fake_.fileSystem.putFile("/data/location-consent", "?");
  (void)written({"allow"});
  EXPECT_EQ(recorded(), "location-consent 1\nauthorizedAlways\n");
  EXPECT_THAT(fake_.diagnostics.lines(), ElementsAre(HasSubstr("location-consent.damaged-1")));
}

TEST_F(LocationCommandTest, WhatItDoesNotKnowIsABadArgument) {
  expectFailure(ExitStatus::badArguments, {"permit"},
                "location takes status, allow, allow-in-use, deny or reset, not \"permit\"");
  expectFailure(ExitStatus::badArguments, {""}, "not \"\"");
  expectFailure(ExitStatus::badArguments, {"Status"}, "not \"Status\"");
  expectFailure(ExitStatus::badArguments, {},
                "location needs ACTION, status, allow, allow-in-use, deny or reset");
  expectFailure(ExitStatus::badArguments, {"status", "now"}, "unexpected argument \"now\"");
  expectFailure(ExitStatus::badArguments, {"deny", "--json"},
                "--json belongs to \"location status\"; leave it out with \"deny\"");
  EXPECT_FALSE(recorded());
}

TEST_F(LocationCommandTest, ItsHelpNamesItsActions) {
  EXPECT_EQ(run({"--help"}), ExitStatus::done);
  for (const char* text : {"ACTION", "status", "allow-in-use", "deny", "reset", "--data-dir"}) {
    EXPECT_THAT(output_.str(), HasSubstr(text));
  }
}

TEST_F(LocationCommandTest, AnOutputThatTakesNothingIsAFailureOfADecisionThatStands) {
  output_.setstate(std::ios::badbit);
  EXPECT_EQ(run({"deny"}), ExitStatus::failed);
  EXPECT_EQ(recorded(), "location-consent 1\ndenied\n");
}

/// A user who answers at once, or never.
class FakeConsentAuthority final : public ConsentAuthority {
 public:
  FakeConsentAuthority(DispatchQueue& mainQueue, ConsentRecord& record)
      : mainQueue_(mainQueue), record_(record) {}

  void ask(AnswerHandler handler) override {
    ++questions;
    if (!answer) return;
    if (answer->outcome == PortalOutcome::granted && !answer->notRecorded) {
      EXPECT_TRUE(record_.record(ConsentDecision::authorizedWhenInUse));
    }
    mainQueue_.async([handler, given = *answer] { handler(given); });
  }

  std::optional<Answer> answer;
  int questions = 0;

 private:
  DispatchQueue& mainQueue_;
  ConsentRecord& record_;
};

class LocationInSandboxTest : public LocationCommandTest {
 protected:
  LocationInSandboxTest() { fake_.machine.consentAuthority = &authority_; }

  void answer(PortalOutcome outcome) {
    authority_.answer = ConsentAuthority::Answer{.outcome = outcome, .notRecorded = {}};
  }

  FakeConsentAuthority authority_{fake_.dispatch.mainQueue(), fake_.consentRecord};
};

TEST_F(LocationInSandboxTest, BothWaysToAllowAskAndCountAsInUse) {
  answer(PortalOutcome::granted);
  for (const char* action : {"allow", "allow-in-use"}) {
    EXPECT_EQ(written({action}), "Wi-Fi names are shown from now on while they are in use.\n");
    EXPECT_EQ(recorded(), "location-consent 1\nauthorizedWhenInUse\n");
  }
  EXPECT_EQ(authority_.questions, 2);
}

TEST_F(LocationInSandboxTest, WhateverIsNoConsentIsAFailureThatSaysWhy) {
  for (const auto outcome :
       {PortalOutcome::refused, PortalOutcome::ended, PortalOutcome::noBus, PortalOutcome::missing,
        PortalOutcome::disabled, PortalOutcome::silent, PortalOutcome::vanished,
        PortalOutcome::garbled, PortalOutcome::failed}) {
    answer(outcome);
    expectFailure(ExitStatus::failed, {"allow"}, std::string(sentenceOf(outcome)));
  }
  EXPECT_FALSE(recorded());
}

TEST_F(LocationInSandboxTest, AConsentThatCannotBeRecordedIsAFailure) {
  answer(PortalOutcome::granted);
  authority_.answer->notRecorded = ConsentRecordError{
      .sentence = {}, .error = std::make_error_code(std::errc::no_space_on_device)};
  expectFailure(ExitStatus::failed, {"allow"},
                "/data/location-consent could not be written: No space left on device; make room");
}

TEST_F(LocationInSandboxTest, AnInterruptionTakesTheQuestionBack) {
  expectFailure(ExitStatus::failed, {"allow"}, "the question was taken back");
  EXPECT_EQ(authority_.questions, 1);
}

TEST_F(LocationInSandboxTest, DenyAndResetAskNobody) {
  EXPECT_EQ(written({"deny"}), "Wi-Fi names are not shown from now on.\n");
  EXPECT_EQ(recorded(), "location-consent 1\ndenied\n");
  EXPECT_EQ(written({"reset"}),
            "Nothing is decided any more; Wi-Fi names are not shown until it is.\n");
  EXPECT_EQ(authority_.questions, 0);
}

/// Each run is a program of its own with this machine's seams.
class LocationOnThisMachineTest : public testing::Test {
 protected:
  std::string run(const std::string& action) {
    std::ostringstream output;
    std::ostringstream errors;
    std::unique_ptr<LinuxMachine> machine;
    const std::vector<std::string> arguments = {"location", action, "--data-dir",
                                                (folder_ / "data").string()};
    const ExitStatus status =
        runProgram(arguments, {.output = output, .errors = errors},
                   [&machine](const MachineOptions& options) -> const Machine& {
                     machine = std::make_unique<LinuxMachine>(options);
                     return machine->machine();
                   });
    return std::to_string(static_cast<int>(status)) + " " + output.str() + errors.str();
  }

  TemporaryFolder folder_;
};

TEST_F(LocationOnThisMachineTest, WhatOneProgramDecidesTheNextOneShows) {
  EXPECT_EQ(run("status"), "0 notDetermined\n");
  EXPECT_THAT(folder_.names(), IsEmpty());
  EXPECT_EQ(run("allow"), "0 Wi-Fi names are shown from now on.\n");
  EXPECT_EQ(run("status"), "0 authorizedAlways\n");
  (void)run("allow-in-use");
  EXPECT_EQ(run("status"), "0 authorizedWhenInUse\n");
  (void)run("deny");
  EXPECT_EQ(run("status"), "0 denied\n");
  (void)run("reset");
  EXPECT_EQ(run("status"), "0 notDetermined\n");
}

TEST_F(LocationOnThisMachineTest, AFolderThatCannotBeMadeIsAFailure) {
  folder_.write("data", "in the way");
  EXPECT_THAT(run("allow"), AllOf(testing::StartsWith("1 lanternfold-widgets: "),
                                  HasSubstr("is not a folder; move it away")));
}

// "The work failed" was once all that it said, although the names were shown from then on.
TEST_F(LocationCommandTest, ADecisionThatCannotBeWrittenToTheOutputStandsAndTheLineSaysSo) {
  output_.setstate(std::ios::badbit);
  EXPECT_EQ(run({"allow"}), ExitStatus::failed);
  EXPECT_THAT(errors_.str(), testing::HasSubstr("the decision stands, but cannot be written"));
  EXPECT_EQ(fake_.consentRecord.decision(), ConsentDecision::authorizedAlways);
}

}  // namespace
}  // namespace lanternfold
