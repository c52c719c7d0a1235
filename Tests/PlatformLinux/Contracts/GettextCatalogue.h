// A compiled catalogue in a folder of its own, and the environment that chooses its language.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace lanternfold {

/// Sets an environment variable and puts the former value back. Not while other threads run.
class ScopedEnvironment {
 public:
  ScopedEnvironment(std::string name, const std::optional<std::string>& value);
  ~ScopedEnvironment();
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

 private:
  std::string name_;
  std::optional<std::string> before_;
};

/// A temporary folder of catalogues, removed at the end.
class GettextCatalogue {
 public:
  GettextCatalogue();
  ~GettextCatalogue();
  GettextCatalogue(const GettextCatalogue&) = delete;
  GettextCatalogue& operator=(const GettextCatalogue&) = delete;

  /// Compiles `texts` with msgfmt. Whether that worked; msgfmt says on standard error why not.
  [[nodiscard]] bool add(std::string_view language, std::string_view domain,
                         const std::map<std::string, std::string>& texts);

  [[nodiscard]] const std::filesystem::path& directory() const { return directory_; }

 private:
  std::filesystem::path directory_;
};

}  // namespace lanternfold
