#include "PlatformLinux/Adapters/DeviceTree.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>

#include "PlatformLinux/System/TextFile.h"

namespace lanternfold {

namespace {

namespace fs = std::filesystem;

/// sysfs files are at most a page long.
constexpr std::size_t longestFileBytes = 4096;
/// Deeper than any tree of buses and hubs.
constexpr int mostParents = 32;

std::optional<std::string> readFile(const fs::path& path) {
  return readTextFile(path.c_str(), longestFileBytes);
}

bool isPlainFileName(std::string_view name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == name.npos &&
         name.find('\0') == name.npos;
}

std::string_view withoutLineEnd(std::string_view text) { return text.substr(0, text.find('\n')); }

/// Whether the hardware database knows devices of this bus by name.
bool namesAnAdapter(std::string_view modalias) {
  static constexpr std::array<std::string_view, 3> buses = {"pci:", "usb:", "sdio:"};
  return std::ranges::any_of(
      buses, [modalias](std::string_view bus) { return modalias.starts_with(bus); });
}

/// Of the files that a switch has, either may say that it is off.
bool switchIsOff(const fs::path& radioSwitch) {
  for (const char* name : {"soft", "hard"}) {
    const std::optional<std::string> text = readFile(radioSwitch / name);
    if (text && withoutLineEnd(*text) == "1") return true;
  }
  return false;
}

}  // namespace

LinkEventFile parseLinkEventFile(std::string_view text) {
  LinkEventFile result;
  while (!text.empty()) {
    const std::string_view line = withoutLineEnd(text);
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    if (line.starts_with("IFINDEX=")) {
      const std::string_view number = line.substr(8);
      std::uint32_t index = 0;
      const auto [end, error] = std::from_chars(number.begin(), number.end(), index);
      result.index = error == std::errc{} && end == number.end() ? index : 0;
    } else if (line.starts_with("DEVTYPE=")) {
      result.deviceType = line.substr(8);
    }
  }
  return result;
}

std::optional<fs::path> DeviceTree::believedEntry(std::string_view name, std::uint32_t index,
                                                  LinkEventFile& event) const {
  if (!isPlainFileName(name) || index == 0) return std::nullopt;
  fs::path entry = root_ / "class" / "net" / name;
  const std::optional<std::string> text = readFile(entry / "uevent");
  if (!text) return std::nullopt;
  event = parseLinkEventFile(*text);
  if (event.index != index) return std::nullopt;
  return entry;
}

std::optional<DeviceTreeLink> DeviceTree::link(std::string_view name, std::uint32_t index) const {
  LinkEventFile event;
  const std::optional<fs::path> entry = believedEntry(name, index, event);
  if (!entry) return std::nullopt;
  std::error_code error;
  DeviceTreeLink result{.deviceType = event.deviceType};
  result.hasRadio = fs::exists(*entry / "phy80211", error);
  result.hasDevice = fs::exists(*entry / "device", error);
  const fs::path driver = fs::read_symlink(*entry / "device" / "driver", error);
  result.driver = error ? std::string() : driver.filename().string();
  return result;
}

std::optional<std::string> DeviceTree::adapterModalias(std::string_view name,
                                                       std::uint32_t index) const {
  LinkEventFile event;
  const std::optional<fs::path> entry = believedEntry(name, index, event);
  std::error_code error;
  const fs::path top = fs::canonical(root_ / "devices", error);
  if (!entry || error) return std::nullopt;
  fs::path device = fs::canonical(*entry / "device", error);
  for (int level = 0; !error && level < mostParents && device != top && device.has_relative_path();
       ++level) {
    const std::optional<std::string> text = readFile(device / "modalias");
    if (text && namesAnAdapter(*text)) return std::string(withoutLineEnd(*text));
    device = device.parent_path();
  }
  return std::nullopt;
}

bool DeviceTree::radioIsBlocked(std::string_view name, std::uint32_t index) const {
  LinkEventFile event;
  const std::optional<fs::path> entry = believedEntry(name, index, event);
  if (!entry) return false;
  std::error_code error;
  fs::directory_iterator files(*entry / "phy80211", error);
  for (; !error && files != fs::directory_iterator(); files.increment(error)) {
    const bool isSwitch = files->path().filename().string().starts_with("rfkill");
    if (isSwitch && switchIsOff(files->path())) return true;
  }
  return false;
}

}  // namespace lanternfold
