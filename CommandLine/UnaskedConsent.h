// The user's consent as a command reads it: known, heard of, and asked of nobody.
//
// Made by: whatever draws a widget once. Read by: the widget's timeline provider, which would ask.
#pragma once

#include <cstdint>
#include <memory>

#include "Platform/LocationManager.h"

namespace lanternfold {

/// A command ends as soon as its output is written, which would take a dialog away from the user
/// before he has read it.
class UnaskedConsent final : public LocationConsent {
 public:
  /// `consent` outlives this and every manager of it.
  explicit UnaskedConsent(LocationConsent& consent) : consent_(consent) {}

  [[nodiscard]] std::int32_t authorizationStatus() const override;
  /// The manager hears of changes; its requests do nothing.
  [[nodiscard]] std::unique_ptr<LocationManager> makeLocationManager(
      ChangeHandler didChangeAuthorization) override;

 private:
  LocationConsent& consent_;
};

}  // namespace lanternfold
