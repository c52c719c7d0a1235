// The settings of programs in one data folder, for tests of what happens to their files.
#pragma once

#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <sys/file.h>

#include <gtest/gtest.h>

#include "PlatformLinux/Defaults/SqliteUserDefaults.h"
#include "PlatformLinux/System/FileDescriptor.h"
#include "Tests/Support/RecordingDiagnosticLog.h"
#include "Tests/Support/TemporaryFolder.h"

namespace lanternfold {

/// As another program that opens the database and never ends with it: nobody else opens it for as
/// long as this lives.
inline FileDescriptor keepFromOpening(const std::filesystem::path& database) {
  const std::string name = database.string() + ".lock";
  FileDescriptor file(::open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
  EXPECT_EQ(::flock(file.get(), LOCK_EX | LOCK_NB), 0);
  return file;
}

/// One program.
struct DefaultsProgram {
  explicit DefaultsProgram(const std::filesystem::path& data) : directory(data) {}

  DataDirectory directory;
  RecordingDiagnosticLog log;
  SqliteUserDefaultsSuites suites{directory, log};
  std::shared_ptr<UserDefaults> defaults = suites.standard();

  [[nodiscard]] std::int64_t integer(std::string_view key) const {
    const auto value = defaults->object(key).value();
    return value ? value->asInteger().value_or(-1) : 0;
  }
  /// Why the setting cannot be read, or nothing.
  [[nodiscard]] std::string unread(std::string_view key) const {
    const auto value = defaults->object(key);
    return value ? "" : value.error().sentence;
  }
  /// Why the settings cannot be brought to the disk, or nothing.
  [[nodiscard]] std::string synchronized() const {
    const auto done = defaults->synchronize();
    return done ? "" : done.error().sentence;
  }
};

class DefaultsFixture : public testing::Test {
 protected:
  [[nodiscard]] std::filesystem::path data() const { return folder_ / "data"; }
  [[nodiscard]] std::filesystem::path defaultsFolder() const { return data() / "defaults"; }
  [[nodiscard]] std::filesystem::path database() const {
    return defaultsFolder() / "standard.sqlite";
  }
  void makeFolders() const { EXPECT_TRUE(DataDirectory(data()).defaultsFolder()); }

  /// What stands in the folder of settings, but for the file that is locked.
  [[nodiscard]] std::set<std::string> names() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(defaultsFolder())) {
      if (entry.path().extension() != ".lock") names.insert(entry.path().filename().string());
    }
    return names;
  }

  TemporaryFolder folder_;
};

}  // namespace lanternfold
