#include "NetworkWidgetVexExtension/Intents/NetworkAdapter.h"

#include <string_view>
#include <utility>

namespace lanternfold {
namespace {

constexpr const char* identifierKey = "identifier";
constexpr const char* displayKey = "displayString";
constexpr const char* pronunciationKey = "pronunciationHint";

/// None when there is no such member.
std::expected<std::optional<std::string>, NetworkAdapterCodingError> textOf(
    const PropertyListDictionary& members, std::string_view key) {
  const PropertyListValue* member = members.find(key);
  if (member == nullptr) return std::nullopt;
  const std::string* text = member->asString();
  if (text == nullptr) return std::unexpected(NetworkAdapterCodingError::wrongType);
  return *text;
}

}  // namespace

PropertyListValue NetworkAdapter::encoded() const {
  PropertyListDictionary members;
  if (identifier) members.set(identifierKey, *identifier);
  members.set(displayKey, display);
  if (pronunciationHint) members.set(pronunciationKey, *pronunciationHint);
  return members;
}

std::expected<NetworkAdapter, NetworkAdapterCodingError> NetworkAdapter::decode(
    const PropertyListValue& value) {
  const PropertyListDictionary* members = value.asDictionary();
  if (members == nullptr) return std::unexpected(NetworkAdapterCodingError::notADictionary);
  auto identifier = textOf(*members, identifierKey);
  if (!identifier) return std::unexpected(identifier.error());
  auto display = textOf(*members, displayKey);
  if (!display) return std::unexpected(display.error());
  if (!*display) return std::unexpected(NetworkAdapterCodingError::missingDisplay);
  auto pronunciationHint = textOf(*members, pronunciationKey);
  if (!pronunciationHint) return std::unexpected(pronunciationHint.error());
  return NetworkAdapter{.identifier = *std::move(identifier),
                        .display = **std::move(display),
                        .pronunciationHint = *std::move(pronunciationHint)};
}

}  // namespace lanternfold
