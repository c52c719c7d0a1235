// What the kernel's device tree (sysfs) tells of a link and of the device it stands on.
//
// Read by: `LinkSurvey` and the adapter list. A sysfs shows the network namespace that it was
// mounted in, which need not be the one that rtnetlink speaks of: an entry is believed only when
// its interface index is the asked one.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace lanternfold {

/// What a link's directory says.
struct DeviceTreeLink {
  /// DEVTYPE ("wlan", "wwan", "bluetooth"); empty when there is none.
  std::string deviceType;
  /// Whether it belongs to a radio of the 802.11 stack.
  bool hasRadio = false;
  bool hasDevice = false;
  /// The device's driver; empty without a device or a driver.
  std::string driver;
  friend bool operator==(const DeviceTreeLink&, const DeviceTreeLink&) = default;
};

/// The two members of a link's "uevent" file that are used here.
struct LinkEventFile {
  std::uint32_t index = 0;  ///< 0 when missing or not a number
  std::string deviceType;
  friend bool operator==(const LinkEventFile&, const LinkEventFile&) = default;
};

/// "KEY=VALUE" lines; unknown keys are skipped.
[[nodiscard]] LinkEventFile parseLinkEventFile(std::string_view text);

/// Stateless; any thread. Nothing fails: what cannot be read is absent.
class DeviceTree {
 public:
  /// `root` is where sysfs is mounted.
  explicit DeviceTree(std::filesystem::path root = "/sys") : root_(std::move(root)) {}

  /// None when there is no such entry or it belongs to another interface (another index).
  [[nodiscard]] std::optional<DeviceTreeLink> link(std::string_view name,
                                                   std::uint32_t index) const;

  /// The modalias of the card or stick that the link stands on: of its device or the nearest parent
  /// that is on PCI, USB or SDIO. Parents beyond that are bridges and hubs, not the adapter.
  [[nodiscard]] std::optional<std::string> adapterModalias(std::string_view name,
                                                           std::uint32_t index) const;

  /// Whether the radio that the link belongs to is switched off, by software or by a switch
  /// (rfkill). False also when that cannot be read.
  [[nodiscard]] bool radioIsBlocked(std::string_view name, std::uint32_t index) const;

 private:
  /// The entry's directory, when the entry is of this index.
  [[nodiscard]] std::optional<std::filesystem::path> believedEntry(std::string_view name,
                                                                   std::uint32_t index,
                                                                   LinkEventFile& event) const;

  std::filesystem::path root_;
};

}  // namespace lanternfold
