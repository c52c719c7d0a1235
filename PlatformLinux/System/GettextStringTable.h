// The production side of `StringTable`: a gettext catalogue and ICU's numbers.
//
// Made by: the composition, one per catalogue, after `makeGettextSpeak`. Read by: everybody who
// says something to the user.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "Platform/StringTable.h"
#include "Support/DecimalText.h"
#include "Support/UserLanguage.h"

namespace lanternfold {

/// The variables that say which language the user speaks.
[[nodiscard]] LocaleEnvironment localeEnvironmentOfProcess();

/// Whether DIRECTORY/NAME/LC_MESSAGES/DOMAIN.mo is there to be read.
[[nodiscard]] bool hasGettextCatalogue(const std::filesystem::path& directory,
                                       const std::string& domain, const std::string& name);

/// Has the process's tables speak `language`, and no other. gettext takes the language from
/// LANGUAGE at every look-up, so that is set here; before any thread is started. English, whose
/// texts are the keys, needs nothing.
void makeGettextSpeak(const UserLanguage& language);

/// Reads the texts of `language` in DIRECTORY/LANGUAGE/LC_MESSAGES/DOMAIN.mo. What is not there is
/// its own text.
///
/// No locale needs to be installed, and the process's own is not changed: each look-up uses
/// C.UTF-8, which is part of the C library, and in which gettext follows LANGUAGE. Texts are UTF-8.
///
/// gettext keeps one directory per domain for the whole process: a second table of the same domain
/// with another directory would move the first one. It also remembers what it found.
class GettextStringTable final : public StringTable {
 public:
  GettextStringTable(std::string domain, const std::filesystem::path& directory,
                     const UserLanguage& language);
  ~GettextStringTable() override;
  GettextStringTable(const GettextStringTable&) = delete;
  GettextStringTable& operator=(const GettextStringTable&) = delete;

  [[nodiscard]] std::string localized(std::string_view key) const override;
  [[nodiscard]] std::string localizedDecimal(std::string_view digits) const override;

 private:
  class CatalogueLocale;

  std::string domain_;
  std::unique_ptr<CatalogueLocale> locale_;  ///< null for English, which asks no catalogue
  DecimalText decimals_;
};

}  // namespace lanternfold
