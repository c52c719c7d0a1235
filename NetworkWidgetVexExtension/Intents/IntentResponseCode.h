// How far whoever serves an intent has come with it.
#pragma once

namespace lanternfold {

/// The cases that the responses of all intents have in common.
enum class IntentResponseCode {
  unspecified = 0,
  ready = 1,          ///< confirmed: may be handled
  continueInApp = 2,  ///< the main application goes on with it
  inProgress = 3,
  success = 4,
  failure = 5,
  failureRequiringAppLaunch = 6,  ///< the main application has to be opened first
};

}  // namespace lanternfold
