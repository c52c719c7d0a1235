// Where the program keeps what the user has arranged: one folder of the user's configuration.
//
// Made by: the composition of the host. Read by: the store of the widgets, and the lock that keeps
// a second host out.
#pragma once

#include <expected>
#include <filesystem>
#include <string>

namespace lanternfold {

/// In `$XDG_CONFIG_HOME`, which counts only when it is absolute; else in `.config` of the user's
/// home folder. An error is a sentence for the user. Any thread.
class ConfigurationDirectory {
 public:
  using Folder = std::expected<std::filesystem::path, std::string>;

  ConfigurationDirectory();

  /// Whether or not it is there; absolute.
  [[nodiscard]] const Folder& location() const { return location_; }

  /// Made with mode 0700 when it is not there, parents included; refused when it belongs to another
  /// user or when others may write into it.
  [[nodiscard]] Folder folder() const;

 private:
  Folder location_;
};

}  // namespace lanternfold
