// Hardware addresses that the user supplied, because the system withholds an interface's own.
//
// Made by: the composition. Read by: `SimpleWlanInterfaceResolver`.
#pragma once

#include <expected>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "NetworkMonitor/Wlan/WlanHwAddressResolver.h"
#include "Platform/UserDefaults.h"

namespace lanternfold {

/// Any thread. Addresses are kept as they are given, neither checked nor normalised. A stored map
/// with any value that is no string counts as absent: whatever else it holds is not found, and the
/// next address that is saved takes its place.
class MacAddressStore final : public WlanHwAddressResolver {
 public:
  /// A dictionary from the interface's name to its address.
  static constexpr std::string_view addressesKey = "MacAddressStorage";
  /// One address, which earlier versions stored for the Wi-Fi interface.
  static constexpr std::string_view legacyAddressKey = "USER_STORED_MAC";
  /// Under which name the address of the Wi-Fi interface is looked up, whatever it is called.
  static constexpr std::string_view wlanInterfaceName = "en0";

  /// `userDefaults` may not be null.
  explicit MacAddressStore(std::shared_ptr<UserDefaults> userDefaults);

  /// Stores `mac` in the place of an earlier address of that interface. An error when the settings
  /// cannot be read, and then nothing is changed, or when the disk does not take the address, which
  /// is then kept as long as the program runs.
  [[nodiscard]] std::expected<void, UserDefaultsError> save(std::string_view mac,
                                                            std::string_view interfaceName);

  /// Does nothing without a stored map; an interface without an address is no error. Errors as
  /// those of `save`.
  [[nodiscard]] std::expected<void, UserDefaultsError> deleteMacAddress(
      std::string_view interfaceName);

  /// None too while the settings cannot be read.
  [[nodiscard]] std::optional<std::string> macAddress(std::string_view interfaceName) const;

  /// The address stored for `wlanInterfaceName`, else the legacy one.
  [[nodiscard]] std::optional<std::string> getWlanHwAddress() const override;

 private:
  using StoredAddresses = std::expected<std::optional<PropertyListDictionary>, UserDefaultsError>;

  [[nodiscard]] StoredAddresses storedAddresses() const;
  [[nodiscard]] StoredAddresses addressesToChange();
  [[nodiscard]] std::expected<void, UserDefaultsError> write(PropertyListDictionary addresses);

  const std::shared_ptr<UserDefaults> userDefaults_;
  std::mutex changes_;  ///< held from the look to the write of a change
};

}  // namespace lanternfold
