// How the host handles the consent to show Wi-Fi names.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "HostProgram/Consent/WifiNames.h"
#include "Tests/Support/FakeFileSystem.h"
#include "Tests/Support/FakeLocationConsent.h"
#include "Tests/Support/FakeWidgetExtension.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/SimulatedDispatch.h"

namespace lanternfold {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// A portal that grants, or does what a test says.
class FakeAuthority final : public ConsentAuthority {
 public:
  void ask(AnswerHandler handler) override {
    ++questions;
    handler(answer);
  }
  Answer answer{.outcome = PortalOutcome::granted, .notRecorded = std::nullopt};
  int questions = 0;
};

class WifiNamesTest : public testing::Test {
 protected:
  [[nodiscard]] WifiNames& start(ConsentAuthority* authority = nullptr) {
    return names_.emplace(WifiNames::Surroundings{.consent = consent_,
                                                  .record = record_,
                                                  .authority = authority,
                                                  .extension = extension_,
                                                  .hasWifi = [this] { return hasWifi_; },
                                                  .askUser = [this] { ++questions_; },
                                                  .changed =
                                                      [this](bool isRevoked) {
                                                        ++changes_;
                                                        isRevoked_ = isRevoked;
                                                      }});
  }
  void request() {
    extension_.requestLocation(/*whenInUse=*/false);
    settle();
  }
  void settle() { dispatch_.advance(std::chrono::seconds(1)); }

  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakeFileSystem files_{clock_};
  RecordingDiagnosticLog log_;
  ConsentRecord record_{{.file = "/data/location-consent",
                         .checkFolder = [] { return std::expected<void, std::string>(); },
                         .makeFolder = [this]() -> std::expected<void, std::string> {
                           files_.makeFolder("/data");
                           return {};
                         }},
                        files_,
                        log_};
  FakeLocationConsent consent_{dispatch_.mainQueue()};
  FakeWidgetExtension extension_{dispatch_.mainQueue(), clock_};
  bool hasWifi_ = true;
  int questions_ = 0;
  int changes_ = 0;
  bool isRevoked_ = false;
  std::optional<WifiNames> names_;
};

TEST_F(WifiNamesTest, TheUserIsAskedOnceWhenAWidgetNeedsIt) {
  (void)start();
  EXPECT_EQ(questions_, 0);
  request();
  request();
  EXPECT_EQ(questions_, 1);
}

/// The first start on a machine with a cable alone was a question about networks that there are
/// not.
TEST_F(WifiNamesTest, WithoutWifiNobodyIsAsked) {
  hasWifi_ = false;
  (void)start();
  request();
  EXPECT_EQ(questions_, 0);
}

TEST_F(WifiNamesTest, WifiThatComesIsAskedAboutOnceWhenAWidgetHasNeededIt) {
  hasWifi_ = false;
  WifiNames& names = start();
  request();
  names.networkPathChanged();
  EXPECT_EQ(questions_, 0);
  hasWifi_ = true;
  names.networkPathChanged();
  names.networkPathChanged();
  request();
  EXPECT_EQ(questions_, 1);
}

TEST_F(WifiNamesTest, WifiThatComesIsNotAskedAboutWhileNoWidgetNeedsItOrAfterADecision) {
  hasWifi_ = false;
  WifiNames& names = start();
  hasWifi_ = true;
  names.networkPathChanged();
  EXPECT_EQ(questions_, 0);
  hasWifi_ = false;
  request();
  consent_.setAuthorizationStatus(2);
  hasWifi_ = true;
  names.networkPathChanged();
  EXPECT_EQ(questions_, 0);
}

TEST_F(WifiNamesTest, WhatIsDecidedIsNotAskedAgain) {
  consent_.setAuthorizationStatus(2);
  (void)start();
  request();
  EXPECT_EQ(questions_, 0);
}

TEST_F(WifiNamesTest, InsideASandboxThePortalIsAsked) {
  FakeAuthority authority;
  EXPECT_TRUE(start(&authority).isConsentElsewhere());
  request();
  EXPECT_EQ(questions_, 0);
  EXPECT_EQ(authority.questions, 1);
}

TEST_F(WifiNamesTest, TheExtensionHearsOfTheDecisionAndOfItsChanges) {
  (void)start();
  consent_.setAuthorizationStatus(3);
  settle();
  EXPECT_THAT(extension_.toldStatuses(), ElementsAre(0, 3));
  EXPECT_EQ(changes_, 1);
}

TEST_F(WifiNamesTest, NamesVanishWhenAConsentIsRevokedAndOnlyThen) {
  (void)start();
  // Each as the first decision, as it was given, changed and taken back.
  for (const auto& [status, isRevoked] :
       {std::pair{2, false}, {3, false}, {4, false}, {0, true}, {4, false}, {2, true}}) {
    consent_.setAuthorizationStatus(status);
    settle();
    EXPECT_EQ(isRevoked_, isRevoked) << status;
  }
  EXPECT_EQ(changes_, 6);
}

TEST_F(WifiNamesTest, ADecisionIsRecorded) {
  std::optional<std::expected<void, std::string>> result;
  start().decide(ConsentDecision::authorizedWhenInUse,
                 [&result](const auto& decided) { result = decided; });
  ASSERT_TRUE(result && *result);
  EXPECT_EQ(record_.decision(), ConsentDecision::authorizedWhenInUse);
}

TEST_F(WifiNamesTest, InsideASandboxARefusalIsRecordedAndAConsentIsThePortals) {
  FakeAuthority authority;
  WifiNames& names = start(&authority);
  names.decide(ConsentDecision::denied, [](const auto&) {});
  EXPECT_EQ(record_.decision(), ConsentDecision::denied);
  EXPECT_EQ(authority.questions, 0);
  authority.answer.outcome = PortalOutcome::refused;
  std::string sentence;
  names.decide(ConsentDecision::authorizedAlways, [&sentence](const auto& decided) {
    if (!decided) sentence = decided.error();
  });
  EXPECT_EQ(authority.questions, 1);
  EXPECT_EQ(sentence, sentenceOf(PortalOutcome::refused));
}

TEST_F(WifiNamesTest, ADecisionThatCannotBeRecordedSaysWhy) {
  files_.makeFolder("/data");
  files_.denyWriting("/data");
  std::string sentence;
  start().decide(ConsentDecision::denied, [&sentence](const auto& decided) {
    if (!decided) sentence = decided.error();
  });
  EXPECT_THAT(sentence, HasSubstr("location-consent"));
}

TEST_F(WifiNamesTest, WhatSystemsSayBesidesIsNoDecision) {
  const WifiNames& names = start();
  for (const std::int32_t status : {0, 1, -1, 7}) {
    consent_.setAuthorizationStatus(status);
    EXPECT_EQ(names.decision(), ConsentDecision::notDetermined) << status;
  }
  consent_.setAuthorizationStatus(4);
  EXPECT_EQ(names.decision(), ConsentDecision::authorizedWhenInUse);
}

}  // namespace
}  // namespace lanternfold
