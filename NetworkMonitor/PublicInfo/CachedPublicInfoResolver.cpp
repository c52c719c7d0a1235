#include "NetworkMonitor/PublicInfo/CachedPublicInfoResolver.h"

#include <string>
#include <utility>

#include "Platform/UrlError.h"
#include "Support/FatalError.h"

namespace lanternfold {
namespace {

/// The text under `key`; null for none.
const std::string* textOf(const PublicInfo& info, PublicInfoKey key) {
  const auto found = info.find(key);
  return found == info.end() ? nullptr : std::get_if<std::string>(&found->second);
}

bool isText(PublicInfoKey key) {
  return key != PublicInfoKey::supportsIp6 && key != PublicInfoKey::interface;
}

}  // namespace

CachedPublicInfoResolver::CachedPublicInfoResolver(std::shared_ptr<PublicInfoResolver> ipResolver,
                                                   std::shared_ptr<PublicInfoResolver> resolver,
                                                   std::shared_ptr<UserDefaults> userDefaults,
                                                   const Clock& clock)
    : ipResolver_(std::move(ipResolver)),
      resolver_(std::move(resolver)),
      userDefaults_(std::move(userDefaults)),
      clock_(clock) {
  if (!ipResolver_ || !resolver_ || !userDefaults_) {
    fatalError("a cached resolver was made without one of its resolvers or its user defaults");
  }
}

PublicInfoResolver::Keys CachedPublicInfoResolver::supportedKeys() const {
  return {PublicInfoKey::ip, PublicInfoKey::isp, PublicInfoKey::country};
}

void CachedPublicInfoResolver::resolve(Keys keys, Completion completion) {
  ipResolver_->resolve({PublicInfoKey::ip},
                       [self = shared_from_this(), request = ++lastRequest_, keys = std::move(keys),
                        completion = std::move(completion)](const Answer& address) mutable {
                         self->resolveAt(address, request, std::move(keys), std::move(completion));
                       });
}

void CachedPublicInfoResolver::resolveAt(const Answer& address, std::uint64_t request, Keys keys,
                                         Completion completion) {
  if (auto stored = storedAnswer(address)) {
    completion(*std::move(stored));
    return;
  }
  // Its question would cancel that of the later request.
  if (request != lastRequest_) {
    completion(std::unexpected(make_error_code(UrlErrorCode::cancelled)));
    return;
  }
  resolver_->resolve(std::move(keys), [self = shared_from_this(),
                                       completion = std::move(completion)](Answer answer) mutable {
    if (answer) self->store(*answer);
    completion(std::move(answer));
  });
}

std::optional<PublicInfo> CachedPublicInfoResolver::storedAnswer(const Answer& address) const {
  const std::string* current = address ? textOf(*address, PublicInfoKey::ip) : nullptr;
  if (current == nullptr) return std::nullopt;
  auto values = storedValues();
  if (!values) return std::nullopt;
  const std::string* stored = textOf(*values, PublicInfoKey::ip);
  if (stored == nullptr || *stored != *current || !isStoredRecently()) return std::nullopt;
  return values;
}

/// None when a value is of another kind than this class stores, as if there were no answer.
std::optional<PublicInfo> CachedPublicInfoResolver::storedValues() const {
  const auto look = userDefaults_->object(storageKey);
  if (!look || !look->has_value()) return std::nullopt;
  const PropertyListDictionary* stored = (*look)->asDictionary();
  if (stored == nullptr) return std::nullopt;
  PublicInfo values;
  for (const auto& [name, value] : stored->entries()) {
    const std::string* text = value.asString();
    if (text == nullptr) return std::nullopt;
    const auto key = publicInfoKeyOf(name);
    if (key && isText(*key)) values.emplace(*key, *text);
  }
  return values;
}

/// A date in the future, which a clock that ran ahead has left, would never grow old.
bool CachedPublicInfoResolver::isStoredRecently() const {
  const auto look = userDefaults_->object(dateKey);
  if (!look || !look->has_value()) return false;
  const PropertyListValue::Date* date = (*look)->asDate();
  const auto now = clock_.now();
  return date != nullptr && *date <= now && *date > now - lifetime;
}

void CachedPublicInfoResolver::store(const PublicInfo& answer) {
  PropertyListDictionary texts;
  for (const auto& [key, value] : answer) {
    if (const auto* text = std::get_if<std::string>(&value)) texts.set(rawValue(key), *text);
  }
  // In this order: a program that ends between the two leaves an answer that seems older than it
  // is, never one that seems younger.
  userDefaults_->set(storageKey, std::move(texts));
  userDefaults_->set(dateKey, clock_.now());
  // What the disk does not take now stays in memory and is tried again.
  static_cast<void>(userDefaults_->synchronize());
}

}  // namespace lanternfold
