// The user's language: one choice for every text, date and number.
//
// Made by: the composition, once, from the environment and the catalogues at hand. Read by: whoever
// looks up texts, writes dates and numbers, or draws from right to left. No locale needs to be
// installed: catalogues and ICU have everything.
#pragma once

#include <functional>
#include <string>

namespace lanternfold {

/// Variables of an environment that say what its user speaks; empty when they are not set.
struct LocaleEnvironment {
  std::string language;  ///< LANGUAGE: languages in the order of preference, between colons
  std::string all;       ///< LC_ALL
  std::string messages;  ///< LC_MESSAGES
  std::string time;      ///< LC_TIME
  std::string numeric;   ///< LC_NUMERIC
  std::string lang;      ///< LANG

  bool operator==(const LocaleEnvironment&) const = default;
};

struct UserLanguage {
  /// The name of the catalogue that has the texts ("de", "zh_CN"); empty for English, whose texts
  /// are the keys.
  std::string catalogue;
  /// Of the same language, with the region whose habits dates and times follow, if there is one:
  /// "de_AT", "en_PL". As ICU names it.
  std::string dateLocale = "en";
  /// The same for numbers.
  std::string numberLocale = "en";
  bool isRightToLeft = false;

  bool operator==(const UserLanguage&) const = default;
};

/// Whether there is a catalogue of this name, which holds ASCII letters, digits and "_" only.
using HasCatalogue = std::function<bool(const std::string& name)>;

/// The first language of preference that there are texts in, as gettext takes them: those of
/// LANGUAGE, unless the locale of messages (LC_ALL, else LC_MESSAGES, else LANG) is "C", else that
/// locale's. A catalogue serves a language when it is in the same script, whatever the region:
/// "zh_CN" serves "zh_Hans" and "zh_SG", and does not serve "zh_TW". English always has texts; a
/// user whose languages have none gets English too.
///
/// The region is that of LC_ALL, else of LC_TIME or LC_NUMERIC, else of LANG, also when that is
/// another language: who reads English because there is no Polish sees the time as in Poland.
/// Without one there it is that of the chosen preference. What is no locale's name, or not among
/// the first 32 of LANGUAGE, counts as not given.
[[nodiscard]] UserLanguage userLanguage(const LocaleEnvironment& environment,
                                        const HasCatalogue& hasCatalogue);

}  // namespace lanternfold
