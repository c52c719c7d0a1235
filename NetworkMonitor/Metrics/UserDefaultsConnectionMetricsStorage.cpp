#include "NetworkMonitor/Metrics/UserDefaultsConnectionMetricsStorage.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <span>
#include <string>
#include <utility>

#include "NetworkMonitor/Metrics/ConnectionMetricsJson.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsJsonText.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

struct EntryKey {
  ConnectionMetricsType type;
  std::string_view interfaceName;
};

/// Of "0/en0": the first slash is the one that divides, so a name may hold others.
std::optional<EntryKey> entryKey(std::string_view text) {
  const std::size_t slash = text.find('/');
  if (slash == std::string_view::npos || slash + 1 == text.size()) return std::nullopt;
  std::string_view prefix = text.substr(0, slash);
  if (prefix.starts_with('+')) prefix.remove_prefix(1);  // std::from_chars does not take it
  std::int64_t rawValue = 0;
  const char* const end = prefix.data() + prefix.size();
  const auto [parsedTo, error] = std::from_chars(prefix.data(), end, rawValue);
  if (error != std::errc{} || parsedTo != end) return std::nullopt;
  const auto type = connectionMetricsType(rawValue);
  if (!type) return std::nullopt;
  return EntryKey{.type = *type, .interfaceName = text.substr(slash + 1)};
}

std::string textOf(const EntryKey& key) {
  return std::to_string(std::to_underlying(key.type)) + "/" + std::string(key.interfaceName);
}

std::optional<ConnectionMetrics> decoded(const PropertyListValue::Data& data) {
  const auto metrics =
      decodeConnectionMetrics({reinterpret_cast<const char*>(data.data()), data.size()});
  return metrics ? std::optional(*metrics) : std::nullopt;
}

/// What stands in `value` when it is a dictionary whose values are all data; null otherwise.
const PropertyListDictionary* dictionaryOfData(const std::optional<PropertyListValue>& value) {
  const auto* dictionary = value ? value->asDictionary() : nullptr;
  if (dictionary == nullptr) return nullptr;
  const bool holdsDataAlone = std::ranges::all_of(
      dictionary->entries(), [](const auto& entry) { return entry.second.asData() != nullptr; });
  return holdsDataAlone ? dictionary : nullptr;
}

/// The map that stands in `value`, of the entries that are wanted: the others are not decoded.
template <typename IsWanted>
ConnectionMetricsData decoded(const std::optional<PropertyListValue>& value, IsWanted isWanted) {
  ConnectionMetricsData data;
  const auto* dictionary = dictionaryOfData(value);
  if (dictionary == nullptr) return data;
  for (const auto& [text, entry] : dictionary->entries()) {
    const auto key = entryKey(text);
    if (!key || !isWanted(*key)) continue;
    if (const auto metrics = decoded(*entry.asData())) {
      setMetrics(data, key->interfaceName, key->type, *metrics);
    }
  }
  return data;
}

/// The entry's value; none when no JSON text can hold the name that it stands under.
std::optional<PropertyListValue::Data> encoded(std::string_view interfaceName,
                                               const ConnectionMetrics& metrics) {
  std::string text;
  if (!appendJsonString(text, interfaceName)) return std::nullopt;
  text = encodeConnectionMetrics(metrics);
  const auto bytes = std::as_bytes(std::span(text));
  return PropertyListValue::Data(bytes.begin(), bytes.end());
}

}  // namespace

UserDefaultsConnectionMetricsStorage::UserDefaultsConnectionMetricsStorage(
    Environment environment, std::shared_ptr<UserDefaults> userDefaults)
    : environment_(environment), userDefaults_(std::move(userDefaults)) {
  if (!userDefaults_) fatalError("a storage in user defaults was given none");
}

std::optional<ConnectionMetricsStorage::Date>
UserDefaultsConnectionMetricsStorage::lastRegisterDate() const {
  const auto value = look(lastRegisterDateKey);
  const Date* date = value ? value->asDate() : nullptr;
  return date != nullptr ? std::optional(*date) : std::nullopt;
}

void UserDefaultsConnectionMetricsStorage::registerMetrics(const ConnectionMetrics& metrics,
                                                           std::string_view interfaceName,
                                                           ConnectionMetricsType type) {
  if (failedLook_) return;
  const auto isWanted = [](const EntryKey&) { return true; };
  ConnectionMetricsData data = decoded(look(dataKey), isWanted);
  if (failedLook_) return;
  setMetrics(data, interfaceName, type, metrics);
  write(data);
  userDefaults_->set(lastRegisterDateKey, environment_.clock.now());
}

std::optional<ConnectionMetrics> UserDefaultsConnectionMetricsStorage::metrics(
    std::string_view interfaceName, ConnectionMetricsType type) {
  const auto isWanted = [&](const EntryKey& key) {
    return key.type == type && key.interfaceName == interfaceName;
  };
  return metricsIn(decoded(look(dataKey), isWanted), interfaceName, type);
}

ConnectionMetricsStorage::Remembered UserDefaultsConnectionMetricsStorage::remembered(
    std::string_view interfaceName) {
  const auto date = lastRegisterDate();
  const auto isWanted = [&](const EntryKey& key) { return key.interfaceName == interfaceName; };
  const ConnectionMetricsData data = decoded(look(dataKey), isWanted);
  return {.lastRegisterDate = date,
          .original = metricsIn(data, interfaceName, ConnectionMetricsType::original),
          .adjusted = metricsIn(data, interfaceName, ConnectionMetricsType::adjusted)};
}

ConnectionMetricsMap UserDefaultsConnectionMetricsStorage::allMetrics(ConnectionMetricsType type) {
  const auto isWanted = [type](const EntryKey& key) { return key.type == type; };
  return allMetricsIn(decoded(look(dataKey), isWanted), type);
}

void UserDefaultsConnectionMetricsStorage::reset() {
  userDefaults_->remove(dataKey);
  userDefaults_->remove(lastRegisterDateKey);
  failedLook_.reset();
}

std::expected<void, MetricsSaveError> UserDefaultsConnectionMetricsStorage::save() {
  auto failedLook = std::exchange(failedLook_, std::nullopt);
  // Also after a failed look: this is what opens a suite that could not be opened.
  auto synchronised = userDefaults_->synchronize();
  if (!synchronised) {
    return std::unexpected(MetricsSaveError{std::move(synchronised).error().sentence});
  }
  if (failedLook) return std::unexpected(MetricsSaveError{std::move(failedLook)->sentence});
  return {};
}

std::optional<PropertyListValue> UserDefaultsConnectionMetricsStorage::look(
    std::string_view key) const {
  auto looked = userDefaults_->object(key);
  if (looked) return *std::move(looked);
  if (!failedLook_) failedLook_ = std::move(looked).error();
  return std::nullopt;
}

void UserDefaultsConnectionMetricsStorage::write(const ConnectionMetricsData& data) {
  PropertyListDictionary dictionary;
  for (const auto& [type, records] : data) {
    dictionary.reserve(dictionary.size() + records.size());
    for (const auto& [name, metrics] : records) {
      if (auto bytes = encoded(name, metrics)) {
        dictionary.append(textOf({.type = type, .interfaceName = name}), *std::move(bytes));
      } else {
        environment_.log.line("Failed to encode ConnectionMetrics");
      }
    }
  }
  userDefaults_->set(dataKey, std::move(dictionary));
}

}  // namespace lanternfold
