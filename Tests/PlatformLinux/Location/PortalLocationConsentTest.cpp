// The consent inside a sandbox, over a portal in memory and a record in a real folder.
#include <atomic>
#include <chrono>

#include "PlatformLinux/Location/PortalLocationConsent.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/PosixFileSystem.h"
#include "Tests/PlatformLinux/Location/FakeLocationPortal.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

PortalKnowledge offered(StoredPermission stored) {
  return {.portal = PortalOutcome::offered, .stored = stored};
}
constexpr PortalKnowledge missing{.portal = PortalOutcome::missing,
                                  .stored = StoredPermission::unobservable};

class PortalLocationConsentTest : public testing::Test {
 protected:
  [[nodiscard]] std::unique_ptr<LocationManager> manager() {
    return consent_.makeLocationManager(
        [this] { seen_.push_back(consent_.authorizationStatus()); });
  }
  [[nodiscard]] bool runUntil(const std::function<bool()>& done) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!done() && std::chrono::steady_clock::now() < limit) runFor(2);
    return done();
  }
  void runFor(int milliseconds) {
    static_cast<void>(dispatch_.runMainUntil(std::chrono::steady_clock::now() +
                                             std::chrono::milliseconds(milliseconds)));
  }
  /// Long enough for what would come by mistake.
  void settle() { runFor(150); }

  /// A disk on which nothing can be written any more, but for other programs.
  void setDiskFull(bool isFull) { isDiskFull_ = isFull; }

  TemporaryFolder folder_;
  DataDirectory directory_{folder_ / "data"};
  PosixFileSystem files_;
  RecordingDiagnosticLog log_;
  std::atomic<bool> isDiskFull_ = false;
  ConsentRecord record_{place(), files_, log_};
  ConsentRecord otherPrograms_{consentPlaceIn(directory_, ConsentKeeper::portal), files_, log_};
  FakePortalState portal_;
  std::vector<std::int32_t> seen_;
  EventLoop loop_;
  AsioDispatch dispatch_{loop_};
  PortalLocationConsent consent_{
      {.record = record_, .loop = loop_, .dispatch = dispatch_, .log = log_},
      record_,
      std::make_unique<FakeLocationPortal>(portal_)};

 private:
  [[nodiscard]] ConsentPlace place() {
    ConsentPlace place = consentPlaceIn(directory_, ConsentKeeper::portal);
    place.makeFolder = [this, makeFolder = place.makeFolder]() -> std::expected<void, std::string> {
      if (isDiskFull_) return std::unexpected("the disk is full");
      return makeFolder();
    };
    return place;
  }
};

TEST_F(PortalLocationConsentTest, TheRecordIsNotTheOneFromOutside) {
  EXPECT_EQ(record_.file(), folder_ / "data/portal-location-consent");
}

TEST_F(PortalLocationConsentTest, AnAnswerIsRecordedAndHeardOf) {
  const auto manager = this->manager();
  manager->requestAlwaysAuthorization();
  EXPECT_EQ(portal_.questions(), 1U);
  portal_.answer(PortalOutcome::granted);
  ASSERT_TRUE(runUntil([this] { return !seen_.empty(); }));
  EXPECT_EQ(record_.decision(), ConsentDecision::authorizedWhenInUse);
  EXPECT_THAT(seen_, ElementsAre(4));
  EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(PortalLocationConsentTest, ARefusalIsRecordedAndNobodyIsAskedAgain) {
  const auto manager = this->manager();
  manager->requestWhenInUseAuthorization();
  portal_.answer(PortalOutcome::refused);
  ASSERT_TRUE(runUntil([this] { return !seen_.empty(); }));
  EXPECT_THAT(seen_, ElementsAre(2));
  manager->requestWhenInUseAuthorization();
  EXPECT_EQ(portal_.questions(), 1U);
}

TEST_F(PortalLocationConsentTest, AQuestionWithoutADecisionLeavesALineAndMayBeAskedAgain) {
  const auto manager = this->manager();
  manager->requestWhenInUseAuthorization();
  portal_.answer(PortalOutcome::ended);
  EXPECT_THAT(log_.lines(), ElementsAre(sentenceOf(PortalOutcome::ended)));
  EXPECT_EQ(consent_.authorizationStatus(), 0);
  manager->requestWhenInUseAuthorization();
  EXPECT_EQ(portal_.questions(), 2U);
}

TEST_F(PortalLocationConsentTest, AConsentTakenBackInTheStoreIsHeardOfAtOnce) {
  ASSERT_TRUE(record_.record(ConsentDecision::authorizedWhenInUse));
  portal_.setKnowledge(offered(StoredPermission::granted));
  const auto manager = this->manager();
  portal_.setKnowledge(offered(StoredPermission::refused));
  ASSERT_TRUE(runUntil([this] { return seen_.size() == 1; }));
  portal_.setKnowledge(offered(StoredPermission::absent));
  ASSERT_TRUE(runUntil([this] { return seen_.size() == 2; }));
  portal_.setKnowledge(offered(StoredPermission::granted));
  ASSERT_TRUE(runUntil([this] { return seen_.size() == 3; }));
  EXPECT_THAT(seen_, ElementsAre(2, 0, 4));
}

TEST_F(PortalLocationConsentTest, AConsentThatNobodyCanSeeTakenBackIsVerifiedOnce) {
  ASSERT_TRUE(record_.record(ConsentDecision::authorizedWhenInUse));
  const auto manager = this->manager();
  manager->requestAlwaysAuthorization();
  manager->requestAlwaysAuthorization();
  EXPECT_EQ(portal_.questions(), 1U);
  EXPECT_EQ(consent_.authorizationStatus(), 4);
  portal_.answer(PortalOutcome::refused);
  ASSERT_TRUE(runUntil([this] { return !seen_.empty(); }));
  EXPECT_THAT(seen_, ElementsAre(2));
}

TEST_F(PortalLocationConsentTest, ADenialOfTheUsersNeedsNoPortal) {
  ASSERT_TRUE(record_.record(ConsentDecision::denied));
  portal_.setKnowledge(missing);
  EXPECT_EQ(consent_.authorizationStatus(), 2);
  EXPECT_EQ(portal_.looks(), 0U);
  EXPECT_THAT(log_.lines(), IsEmpty());
}

TEST_F(PortalLocationConsentTest, WithoutAPortalALineSaysSoOnceAndAgainAfterAChange) {
  portal_.setKnowledge(missing);
  EXPECT_EQ(consent_.authorizationStatus(), 1);
  EXPECT_EQ(consent_.authorizationStatus(), 1);
  portal_.setKnowledge(offered(StoredPermission::unobservable));
  EXPECT_EQ(consent_.authorizationStatus(), 0);
  portal_.setKnowledge(missing);
  EXPECT_EQ(consent_.authorizationStatus(), 1);
  EXPECT_THAT(log_.lines(),
              ElementsAre(HasSubstr("no location portal"), HasSubstr("no location portal")));
}

TEST_F(PortalLocationConsentTest, WithoutAPortalARequestDoesNothing) {
  portal_.setKnowledge(missing);
  const auto manager = this->manager();
  manager->requestAlwaysAuthorization();
  EXPECT_EQ(portal_.questions(), 0U);
}

TEST_F(PortalLocationConsentTest, WhoeverAsksHearsTheAnswerOnTheMainQueue) {
  std::vector<PortalOutcome> answers;
  consent_.ask([&](const ConsentAuthority::Answer& answer) {
    EXPECT_TRUE(dispatch_.mainQueue().isCurrent());
    EXPECT_FALSE(answer.notRecorded);
    answers.push_back(answer.outcome);
  });
  portal_.answer(PortalOutcome::granted);
  ASSERT_TRUE(runUntil([&] { return !answers.empty(); }));
  EXPECT_THAT(answers, ElementsAre(PortalOutcome::granted));
  EXPECT_EQ(consent_.authorizationStatus(), 4);
}

TEST_F(PortalLocationConsentTest, AnAnswerThatCannotBeRecordedDoesNotCount) {
  folder_.write("data", "in the way");
  bool isRecorded = true;
  consent_.ask([&](const ConsentAuthority::Answer& answer) { isRecorded = !answer.notRecorded; });
  portal_.answer(PortalOutcome::granted);
  ASSERT_TRUE(runUntil([&] { return !isRecorded; }));
  EXPECT_EQ(consent_.authorizationStatus(), 0);
  const auto manager = this->manager();
  manager->requestAlwaysAuthorization();
  portal_.answer(PortalOutcome::granted);
  EXPECT_THAT(log_.lines(), testing::Contains(HasSubstr("could not be recorded")));
}

TEST_F(PortalLocationConsentTest, ADenialIsNotUndoneByAVerificationThatWasOpen) {
  ASSERT_TRUE(record_.record(ConsentDecision::authorizedWhenInUse));
  const auto manager = this->manager();
  manager->requestAlwaysAuthorization();
  ASSERT_EQ(portal_.questions(), 1U);
  ASSERT_TRUE(otherPrograms_.record(ConsentDecision::denied));
  portal_.answer(PortalOutcome::granted);
  EXPECT_EQ(consent_.authorizationStatus(), 2);
  EXPECT_EQ(record_.decision(), ConsentDecision::denied);
}

TEST_F(PortalLocationConsentTest, AResetIsNotUndoneByAVerificationThatWasOpen) {
  ASSERT_TRUE(record_.record(ConsentDecision::authorizedWhenInUse));
  const auto manager = this->manager();
  manager->requestAlwaysAuthorization();
  ASSERT_TRUE(otherPrograms_.record(ConsentDecision::notDetermined));
  portal_.answer(PortalOutcome::granted);
  EXPECT_EQ(consent_.authorizationStatus(), 0);
}

TEST_F(PortalLocationConsentTest, ADenialIsNotUndoneByAQuestionThatWasOpen) {
  const auto manager = this->manager();
  manager->requestAlwaysAuthorization();
  ASSERT_TRUE(otherPrograms_.record(ConsentDecision::denied));
  portal_.answer(PortalOutcome::granted);
  EXPECT_EQ(consent_.authorizationStatus(), 2);
}

TEST_F(PortalLocationConsentTest, ARefusalCountsEvenWhenTheRecordHasChangedSinceTheQuestion) {
  const auto manager = this->manager();
  manager->requestAlwaysAuthorization();
  ASSERT_TRUE(otherPrograms_.record(ConsentDecision::authorizedWhenInUse));
  portal_.answer(PortalOutcome::refused);
  EXPECT_EQ(consent_.authorizationStatus(), 2);
  EXPECT_EQ(record_.decision(), ConsentDecision::denied);
}

TEST_F(PortalLocationConsentTest, ARefusalThatCannotBeRecordedCountsInThisProgram) {
  ASSERT_TRUE(record_.record(ConsentDecision::authorizedWhenInUse));
  const auto manager = this->manager();
  manager->requestAlwaysAuthorization();
  setDiskFull(true);
  portal_.answer(PortalOutcome::refused);
  EXPECT_EQ(consent_.authorizationStatus(), 2);
  EXPECT_EQ(record_.decision(), ConsentDecision::authorizedWhenInUse);
  ASSERT_TRUE(runUntil([this] { return !seen_.empty(); }));
  EXPECT_THAT(seen_, ElementsAre(2));
  EXPECT_THAT(log_.lines(), ElementsAre(HasSubstr("could not be recorded")));
}

TEST_F(PortalLocationConsentTest, ARefusalThatCouldNotBeRecordedIsRecordedByTheNextAnswer) {
  ASSERT_TRUE(record_.record(ConsentDecision::authorizedWhenInUse));
  const auto manager = this->manager();
  manager->requestAlwaysAuthorization();
  setDiskFull(true);
  portal_.answer(PortalOutcome::refused);
  setDiskFull(false);
  manager->requestAlwaysAuthorization();
  EXPECT_EQ(portal_.questions(), 2U);
  portal_.answer(PortalOutcome::refused);
  EXPECT_EQ(record_.decision(), ConsentDecision::denied);
  EXPECT_EQ(consent_.authorizationStatus(), 2);
}

TEST_F(PortalLocationConsentTest, ALaterConsentEndsARefusalThatCouldNotBeRecorded) {
  ASSERT_TRUE(record_.record(ConsentDecision::authorizedWhenInUse));
  const auto manager = this->manager();
  manager->requestAlwaysAuthorization();
  setDiskFull(true);
  portal_.answer(PortalOutcome::refused);
  ASSERT_EQ(consent_.authorizationStatus(), 2);
  consent_.ask([](const ConsentAuthority::Answer& answer) { EXPECT_FALSE(answer.notRecorded); });
  portal_.answer(PortalOutcome::granted);
  EXPECT_EQ(consent_.authorizationStatus(), 4);
  ASSERT_TRUE(runUntil([this] { return seen_.size() == 2; }));
}

TEST_F(PortalLocationConsentTest, ALaterDecisionElsewhereEndsARefusalThatCouldNotBeRecorded) {
  const auto manager = this->manager();
  manager->requestAlwaysAuthorization();
  setDiskFull(true);
  portal_.answer(PortalOutcome::refused);
  ASSERT_EQ(consent_.authorizationStatus(), 2);
  ASSERT_TRUE(otherPrograms_.record(ConsentDecision::authorizedWhenInUse));
  EXPECT_EQ(consent_.authorizationStatus(), 4);
}

TEST_F(PortalLocationConsentTest, ADestroyedManagerHearsOfNothing) {
  auto manager = this->manager();
  portal_.setKnowledge(missing);
  manager.reset();
  portal_.setKnowledge(offered(StoredPermission::refused));
  settle();
  EXPECT_THAT(seen_, IsEmpty());
}

TEST_F(PortalLocationConsentTest, ManagersThatComeAndGoLeaveNothingBehind) {
  for (int round = 0; round < 20; ++round) (void)manager();
  portal_.setKnowledge(missing);
  settle();
  EXPECT_THAT(seen_, IsEmpty());
}

}  // namespace
}  // namespace lanternfold
