// The production side of `StringTable`: a gettext catalogue.
//
// Made by: the composition, one per catalogue. The user's language is that of the environment
// (LANGUAGE, LC_ALL, LC_MESSAGES, LANG), as for every program that uses gettext.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "Platform/StringTable.h"

namespace lanternfold {

/// Reads DIRECTORY/LANGUAGE/LC_MESSAGES/DOMAIN.mo. Without such a file every key is its own text.
///
/// The process's locale is neither needed nor changed: each look-up uses a locale of the table's
/// own. When the environment names a locale that is not installed that is C.UTF-8, in which gettext
/// still follows LANGUAGE (in plain C it does not). Texts are UTF-8 in every locale.
///
/// gettext keeps one directory per domain for the whole process: a second table of the same domain
/// with another directory would move the first one. It also remembers what it found: a change of
/// the environment in a running process is not followed.
class GettextStringTable final : public StringTable {
 public:
  GettextStringTable(std::string domain, const std::filesystem::path& directory);
  ~GettextStringTable() override;
  GettextStringTable(const GettextStringTable&) = delete;
  GettextStringTable& operator=(const GettextStringTable&) = delete;

  [[nodiscard]] std::string localized(std::string_view key) const override;

 private:
  class UserLocale;

  std::string domain_;
  std::unique_ptr<UserLocale> locale_;
};

}  // namespace lanternfold
