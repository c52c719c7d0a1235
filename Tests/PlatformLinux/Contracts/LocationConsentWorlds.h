// The sides of the consent's seam, each with a user who decides and a way of letting changes come,
// for the contract tests.
#pragma once

#include <chrono>
#include <functional>
#include <vector>

#include "PlatformLinux/Location/LinuxLocationConsent.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/PosixFileSystem.h"
#include "Tests/Support/FakeLocationConsent.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {

/// The user's own record in a data folder, looked at by one program and changed by another. The
/// test's thread is the main thread.
class LinuxConsentWorld {
 public:
  [[nodiscard]] LocationConsent& consent() { return consent_; }
  /// The user decides in another program.
  void decide(ConsentDecision decision) { ASSERT_TRUE(otherRecord_.record(decision)); }
  /// What the user was asked: whether for use only.
  [[nodiscard]] std::vector<bool> asked() const { return asked_; }
  [[nodiscard]] DispatchQueue& mainQueue() { return dispatch_.mainQueue(); }

  /// Lets changes come until `done`. False when it takes longer than any machine should need.
  [[nodiscard]] bool runUntil(const std::function<bool()>& done) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!done()) {
      const auto now = std::chrono::steady_clock::now();
      if (now > limit) return false;
      static_cast<void>(dispatch_.runMainUntil(now + std::chrono::milliseconds(2)));
    }
    return true;
  }
  /// Long enough for what would come by mistake.
  void settle() {
    static_cast<void>(
        dispatch_.runMainUntil(std::chrono::steady_clock::now() + std::chrono::milliseconds(150)));
  }

 private:
  TemporaryFolder folder_;
  DataDirectory directory_{folder_ / "data"};
  PosixFileSystem files_;
  RecordingDiagnosticLog log_;
  ConsentRecord record_{consentPlaceIn(directory_), files_, log_};
  ConsentRecord otherRecord_{consentPlaceIn(directory_), files_, log_};
  std::vector<bool> asked_;
  EventLoop loop_;
  AsioDispatch dispatch_{loop_};
  LinuxLocationConsent consent_{record_, loop_, dispatch_, log_,
                                [this](bool whenInUse) { asked_.push_back(whenInUse); }};
};

/// The fake over virtual time.
class FakeConsentWorld {
 public:
  [[nodiscard]] LocationConsent& consent() { return consent_; }
  void decide(ConsentDecision decision) {
    consent_.setAuthorizationStatus(static_cast<std::int32_t>(decision));
  }
  [[nodiscard]] std::vector<bool> asked() const {
    std::vector<bool> asked;
    for (const auto question : consent_.questions()) {
      asked.push_back(question == FakeLocationConsent::Request::whenInUse);
    }
    return asked;
  }
  [[nodiscard]] DispatchQueue& mainQueue() { return dispatch_.mainQueue(); }

  [[nodiscard]] bool runUntil(const std::function<bool()>& done) {
    return done() || dispatch_.runUntil(done, std::chrono::seconds(30));
  }
  void settle() { dispatch_.advance(std::chrono::seconds(1)); }

 private:
  SimulatedClock clock_;
  SimulatedDispatch dispatch_{clock_};
  FakeLocationConsent consent_{dispatch_.mainQueue()};
};

}  // namespace lanternfold
