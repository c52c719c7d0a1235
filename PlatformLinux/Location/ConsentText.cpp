#include "PlatformLinux/Location/ConsentText.h"

#include <algorithm>
#include <array>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

constexpr std::string_view beginning = "location-consent ";
constexpr std::string_view version = "1";

struct NamedDecision {
  ConsentDecision decision;
  std::string_view name;
};

constexpr std::array<NamedDecision, 4> namedDecisions = {{
    {ConsentDecision::notDetermined, "notDetermined"},
    {ConsentDecision::denied, "denied"},
    {ConsentDecision::authorizedAlways, "authorizedAlways"},
    {ConsentDecision::authorizedWhenInUse, "authorizedWhenInUse"},
}};

/// Whether `text` is a whole number from 2 on, as a later version would write it.
bool isLaterVersion(std::string_view text) {
  const bool isNumber =
      !text.empty() && text.front() != '0' &&
      std::ranges::all_of(text, [](char each) { return each >= '0' && each <= '9'; });
  return isNumber && text != version;
}

}  // namespace

std::string encodeConsent(ConsentDecision decision) {
  const auto named = std::ranges::find(namedDecisions, decision, &NamedDecision::decision);
  if (named == namedDecisions.end()) fatalError("a consent was recorded that is no decision");
  return std::string(beginning) + std::string(version) + '\n' + std::string(named->name) + '\n';
}

std::expected<ConsentDecision, ConsentTextError> decodeConsent(std::string_view text) {
  if (text.size() > longestConsentText) return std::unexpected(ConsentTextError::damaged);
  for (const NamedDecision& named : namedDecisions) {
    if (text == encodeConsent(named.decision)) return named.decision;
  }
  const std::size_t lineEnd = text.find('\n');
  if (text.starts_with(beginning) && lineEnd != std::string_view::npos &&
      isLaterVersion(text.substr(beginning.size(), lineEnd - beginning.size()))) {
    return std::unexpected(ConsentTextError::laterVersion);
  }
  return std::unexpected(ConsentTextError::damaged);
}

}  // namespace lanternfold
