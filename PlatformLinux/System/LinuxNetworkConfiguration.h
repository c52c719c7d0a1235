// This machine's adapters, with their types and human names.
//
// Made by: the composition. Read by: the interface resolver.
#pragma once

#include <memory>

#include "Platform/NetworkConfiguration.h"
#include "PlatformLinux/Adapters/DeviceTree.h"
#include "PlatformLinux/Adapters/HardwareDatabase.h"
#include "PlatformLinux/System/LinkSurvey.h"

namespace lanternfold {

/// Lists wired adapters, then Wi-Fi, Bluetooth and others, each by name. Links that `classifyLink`
/// gives no type are not listed. An adapter's human name comes from the hardware database; those
/// of containers, and of devices that the database does not know, have none.
class LinuxNetworkConfiguration final : public NetworkConfiguration {
 public:
  /// `database` outlives the configuration.
  explicit LinuxNetworkConfiguration(const HardwareDatabase& database,
                                     DeviceTree tree = DeviceTree());

  [[nodiscard]] std::vector<ConfiguredInterface> allInterfaces() const override;
  [[nodiscard]] std::optional<PathInterfaceType> scopedInterfaceType(
      std::string_view scopedAddress) const override;

 private:
  [[nodiscard]] std::optional<std::string> humanName(const LinkMessage& link) const;

  const HardwareDatabase& database_;
  DeviceTree tree_;
  LinkSurvey survey_;
};

}  // namespace lanternfold
