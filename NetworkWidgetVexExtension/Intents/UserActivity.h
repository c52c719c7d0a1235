// What the user was doing, for the main application to go on with.
//
// Made by: whoever answers an intent. Read by: the main application.
#pragma once

#include <string>

#include "Support/PropertyListValue.h"

namespace lanternfold {

struct UserActivity {
  std::string activityType;  ///< in reverse domain notation
  PropertyListDictionary userInfo = {};

  friend bool operator==(const UserActivity&, const UserActivity&) = default;
};

}  // namespace lanternfold
