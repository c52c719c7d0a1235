#include "NetworkMonitor/Wlan/MacAddressStore.h"

#include <algorithm>
#include <utility>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

/// The text that `value` is; none for another kind and for no value.
std::optional<std::string> textOf(const PropertyListValue* value) {
  const std::string* text = value == nullptr ? nullptr : value->asString();
  return text == nullptr ? std::nullopt : std::optional(*text);
}

}  // namespace

MacAddressStore::MacAddressStore(std::shared_ptr<UserDefaults> userDefaults)
    : userDefaults_(std::move(userDefaults)) {
  if (!userDefaults_) fatalError("a store of hardware addresses was made without user defaults");
}

std::expected<void, UserDefaultsError> MacAddressStore::save(std::string_view mac,
                                                             std::string_view interfaceName) {
  const std::lock_guard lock(changes_);
  auto stored = addressesToChange();
  if (!stored) return std::unexpected(std::move(stored).error());
  PropertyListDictionary addresses = stored->value_or(PropertyListDictionary());
  addresses.set(interfaceName, mac);
  return write(std::move(addresses));
}

std::expected<void, UserDefaultsError> MacAddressStore::deleteMacAddress(
    std::string_view interfaceName) {
  const std::lock_guard lock(changes_);
  auto stored = addressesToChange();
  if (!stored) return std::unexpected(std::move(stored).error());
  if (!*stored) return {};
  PropertyListDictionary addresses = **std::move(stored);
  addresses.erase(interfaceName);
  return write(std::move(addresses));
}

std::optional<std::string> MacAddressStore::macAddress(std::string_view interfaceName) const {
  const auto stored = storedAddresses();
  if (!stored || !*stored) return std::nullopt;
  return textOf((*stored)->find(interfaceName));
}

std::optional<std::string> MacAddressStore::getWlanHwAddress() const {
  if (auto address = macAddress(wlanInterfaceName)) return address;
  const auto legacy = userDefaults_->object(legacyAddressKey);
  return legacy && *legacy ? textOf(&**legacy) : std::nullopt;
}

MacAddressStore::StoredAddresses MacAddressStore::storedAddresses() const {
  const auto look = userDefaults_->object(addressesKey);
  if (!look) return std::unexpected(look.error());
  const PropertyListDictionary* addresses = *look ? (*look)->asDictionary() : nullptr;
  if (addresses == nullptr) return std::nullopt;
  const bool areTexts = std::ranges::all_of(
      addresses->entries(), [](const auto& entry) { return entry.second.asString() != nullptr; });
  return areTexts ? std::optional(*addresses) : std::nullopt;
}

/// For a change, what cannot be read must not count as absent: the map that is written back would
/// be one without all that was not read.
MacAddressStore::StoredAddresses MacAddressStore::addressesToChange() {
  if (auto stored = storedAddresses()) return stored;
  // This is what opens a suite that could not be opened.
  if (auto opened = userDefaults_->synchronize(); !opened) {
    return std::unexpected(std::move(opened).error());
  }
  return storedAddresses();
}

std::expected<void, UserDefaultsError> MacAddressStore::write(PropertyListDictionary addresses) {
  userDefaults_->set(addressesKey, std::move(addresses));
  return userDefaults_->synchronize();
}

}  // namespace lanternfold
