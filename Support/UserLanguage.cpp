#include "Support/UserLanguage.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include <unicode/locid.h>

namespace lanternfold {
namespace {

constexpr std::size_t maximumPreferences = 32;
/// Longer than any name of language, script and region.
constexpr std::size_t maximumNameLength = 32;
constexpr std::string_view english = "en";

/// A locale's name, taken apart. Script and region are empty when the name does not say them.
struct LocaleName {
  std::string language;
  std::string script;
  std::string region;
};

bool isAsciiLetterOrDigit(char character) {
  return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
         (character >= 'a' && character <= 'z');
}

/// Without encoding and modifier: "de_DE" of "de_DE.UTF-8@euro".
std::string_view bareName(std::string_view name) {
  return name.substr(0, name.find_first_of(".@"));
}

bool isUntranslated(std::string_view name) { return name == "C" || name == "POSIX"; }

std::optional<LocaleName> parsed(std::string_view name) {
  std::string bare(bareName(name));
  if (bare.empty() || bare.size() > maximumNameLength || isUntranslated(bare)) return std::nullopt;
  std::ranges::replace(bare, '-', '_');
  const auto isAllowed = [](char character) {
    return character == '_' || isAsciiLetterOrDigit(character);
  };
  if (!std::ranges::all_of(bare, isAllowed)) return std::nullopt;
  const icu::Locale locale = icu::Locale::createCanonical(bare.c_str());
  LocaleName result{locale.getLanguage(), locale.getScript(), locale.getCountry()};
  if (result.language.empty()) return std::nullopt;
  return result;
}

std::string joined(const LocaleName& name) {
  std::string text = name.language;
  for (const std::string& part : {name.script, name.region}) {
    if (!part.empty()) text.append("_").append(part);
  }
  return text;
}

/// With the script and the region that most of its readers have, where it does not say others.
LocaleName completed(const LocaleName& name) {
  icu::Locale locale(joined(name).c_str());
  UErrorCode status = U_ZERO_ERROR;
  locale.addLikelySubtags(status);
  return {locale.getLanguage(), locale.getScript(), locale.getCountry()};
}

bool isReadAlike(const LocaleName& one, const LocaleName& other) {
  return one.language == other.language && completed(one).script == completed(other).script;
}

/// What a catalogue that serves `wanted` may be called, the closest one first: that of its region,
/// that of the language, that of the region with most readers of its script.
std::vector<std::string> catalogueNames(const LocaleName& wanted) {
  const LocaleName full = completed(wanted);
  const LocaleName ofScript{full.language, full.script, {}};
  std::vector<std::string> names;
  for (const std::string& region : {full.region, std::string(), completed(ofScript).region}) {
    const LocaleName candidate{full.language, {}, region};
    if (isReadAlike(candidate, ofScript)) names.push_back(joined(candidate));
  }
  return names;
}

std::string firstSet(std::initializer_list<std::string_view> values) {
  const auto* const value = std::ranges::find_if_not(values, &std::string_view::empty);
  return value == values.end() ? std::string() : std::string(*value);
}

/// Up to "C" or "POSIX", after which gettext looks no further.
std::vector<LocaleName> preferences(const LocaleEnvironment& environment) {
  const std::string messages = firstSet({environment.all, environment.messages, environment.lang});
  if (messages.empty() || isUntranslated(messages)) return {};
  std::string_view rest = environment.language.empty() ? messages : environment.language;
  std::vector<LocaleName> names;
  for (std::size_t count = 0; count < maximumPreferences && !rest.empty(); ++count) {
    const std::size_t end = std::min(rest.find(':'), rest.size());
    const std::string_view name = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (isUntranslated(bareName(name))) break;
    if (auto preference = parsed(name)) names.push_back(*std::move(preference));
  }
  return names;
}

struct Choice {
  LocaleName preference{std::string(english), {}, {}};
  std::string catalogue;
};

Choice choiceAmong(const std::vector<LocaleName>& preferences, const HasCatalogue& hasCatalogue) {
  for (const LocaleName& preference : preferences) {
    if (preference.language == english) return {preference, {}};
    const std::vector<std::string> names = catalogueNames(preference);
    const auto name = std::ranges::find_if(names, hasCatalogue);
    if (name != names.end()) return {preference, *name};
  }
  return {};
}

/// `language` in the region of `category`, the name of a locale of whatever language.
std::string inRegionOf(const std::string& category, const LocaleName& language) {
  const auto habits = parsed(category);
  LocaleName result{language.language, {}, language.region};
  if (habits && !habits->region.empty()) result.region = habits->region;
  // Only where the region writes the language in another script does the name need it.
  if (!isReadAlike(result, language)) result.script = completed(language).script;
  return joined(result);
}

}  // namespace

UserLanguage userLanguage(const LocaleEnvironment& environment, const HasCatalogue& hasCatalogue) {
  const Choice choice = choiceAmong(preferences(environment), hasCatalogue);
  const std::string time = firstSet({environment.all, environment.time, environment.lang});
  const std::string numeric = firstSet({environment.all, environment.numeric, environment.lang});
  return {.catalogue = choice.catalogue,
          .dateLocale = inRegionOf(time, choice.preference),
          .numberLocale = inRegionOf(numeric, choice.preference),
          .isRightToLeft = icu::Locale(joined(choice.preference).c_str()).isRightToLeft() != 0};
}

}  // namespace lanternfold
