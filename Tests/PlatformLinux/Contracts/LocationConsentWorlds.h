// The sides of the consent's seam, each with a user who decides and a way of letting changes come,
// for the contract tests.
#pragma once

#include <chrono>
#include <functional>
#include <vector>

#include "PlatformLinux/Location/LinuxLocationConsent.h"
#include "PlatformLinux/Location/PortalLocationConsent.h"
#include "PlatformLinux/System/AsioDispatch.h"
#include "PlatformLinux/System/PosixFileSystem.h"
#include "Tests/PlatformLinux/Location/FakeLocationPortal.h"
#include "Tests/Support/FakeLocationConsent.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/SimulatedClock.h"
#include "Tests/Support/SimulatedDispatch.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {

/// Lets changes come until `done`. False when it takes longer than any machine should need.
[[nodiscard]] inline bool runMainQueueUntil(AsioDispatch& dispatch,
                                            const std::function<bool()>& done) {
  const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (!done()) {
    const auto now = std::chrono::steady_clock::now();
    if (now > limit) return false;
    static_cast<void>(dispatch.runMainUntil(now + std::chrono::milliseconds(2)));
  }
  return true;
}

/// Long enough for what would come by mistake.
inline void settleMainQueue(AsioDispatch& dispatch) {
  static_cast<void>(
      dispatch.runMainUntil(std::chrono::steady_clock::now() + std::chrono::milliseconds(150)));
}

/// The user's own record in a data folder, looked at by one program and changed by another. The
/// test's thread is the main thread.
class LinuxConsentWorld {
 public:
  [[nodiscard]] LocationConsent& consent() { return consent_; }
  /// The user decides in another program.
  void decide(ConsentDecision decision) { ASSERT_TRUE(otherRecord_.record(decision)); }
  /// The status after that.
  [[nodiscard]] static std::int32_t statusOf(ConsentDecision decision) {
    return static_cast<std::int32_t>(decision);
  }
  /// How often the user was asked.
  [[nodiscard]] std::size_t asked() const { return asked_; }
  [[nodiscard]] DispatchQueue& mainQueue() { return dispatch_.mainQueue(); }

  [[nodiscard]] bool runUntil(const std::function<bool()>& done) {
    return runMainQueueUntil(dispatch_, done);
  }
  void settle() { settleMainQueue(dispatch_); }

 private:
  TemporaryFolder folder_;
  DataDirectory directory_{folder_ / "data"};
  PosixFileSystem files_;
  RecordingDiagnosticLog log_;
  ConsentRecord record_{consentPlaceIn(directory_), files_, log_};
  ConsentRecord otherRecord_{consentPlaceIn(directory_), files_, log_};
  std::size_t asked_ = 0;
  EventLoop loop_;
  AsioDispatch dispatch_{loop_};
  LinuxLocationConsent consent_{record_, loop_, dispatch_, log_,
                                [this](bool /*whenInUse*/) { ++asked_; }};
};

/// A sandbox's record and a portal in memory whose store can be looked at: the user decides there,
/// and another program records it.
class PortalConsentWorld {
 public:
  [[nodiscard]] LocationConsent& consent() { return consent_; }
  void decide(ConsentDecision decision) {
    ASSERT_TRUE(otherRecord_.record(decision));
    StoredPermission stored = StoredPermission::granted;
    if (decision == ConsentDecision::notDetermined) stored = StoredPermission::absent;
    if (decision == ConsentDecision::denied) stored = StoredPermission::refused;
    portal_.setKnowledge({.portal = PortalOutcome::offered, .stored = stored});
  }
  /// A portal gives no consent for always.
  [[nodiscard]] static std::int32_t statusOf(ConsentDecision decision) {
    return decision == ConsentDecision::authorizedAlways ? 4 : static_cast<std::int32_t>(decision);
  }
  [[nodiscard]] std::size_t asked() { return portal_.questions(); }
  [[nodiscard]] DispatchQueue& mainQueue() { return dispatch_.mainQueue(); }

  [[nodiscard]] bool runUntil(const std::function<bool()>& done) {
    return runMainQueueUntil(dispatch_, done);
  }
  void settle() { settleMainQueue(dispatch_); }

 private:
  TemporaryFolder folder_;
  DataDirectory directory_{folder_ / "data"};
  PosixFileSystem files_;
  RecordingDiagnosticLog log_;
  ConsentRecord record_{consentPlaceIn(directory_, ConsentKeeper::portal), files_, log_};
  ConsentRecord otherRecord_{consentPlaceIn(directory_, ConsentKeeper::portal), files_, log_};
  FakePortalState portal_;
  EventLoop loop_;
  AsioDispatch dispatch_{loop_};
  PortalLocationConsent consent_{
      {.record = record_, .loop = loop_, .dispatch = dispatch_, .log = log_},
      record_,
      std::make_unique<FakeLocationPortal>(portal_)};
};

/// The fake over virtual time.
class FakeConsentWorld {
 public:
  [[nodiscard]] LocationConsent& consent() { return consent_; }
  void decide(ConsentDecision decision) {
    consent_.setAuthorizationStatus(static_cast<std::int32_t>(decision));
  }
  [[nodiscard]] static std::int32_t statusOf(ConsentDecision decision) {
    return static_cast<std::int32_t>(decision);
  }
  [[nodiscard]] std::size_t asked() const { return consent_.questions().size(); }
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
