#include "NetBase/AddressTypeGuesser.h"

#include "NetBase/AddressText.h"

namespace lanternfold {
namespace {

/// In none of which a host name is written.
constexpr std::string_view excludedCharacters = " /:&%?";

}  // namespace

std::optional<AddressType> StandardAddressTypeGuesser::type(std::string_view text) const {
  if (ipv4OfText(text)) return AddressType::ipv4;
  if (ipv6OfText(text)) return AddressType::ipv6;
  if (text.find_first_of(excludedCharacters) != std::string_view::npos) return std::nullopt;
  return AddressType::hostname;
}

}  // namespace lanternfold
