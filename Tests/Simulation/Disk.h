// The one disk of a simulated machine, with its faults: full, slow, without permission; and the
// moments at which a program loses its turn or its life between two steps of an operation.
//
// Made by: the world. Used by: the programs, each through a `ProgramFiles` of its own.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

#include "Tests/Simulation/FileObserver.h"
#include "Tests/Simulation/LockObserver.h"
#include "Tests/Simulation/Turn.h"
#include "Tests/Support/FakeFileSystem.h"

namespace lanternfold::simulation {

struct DiskPaths {
  std::filesystem::path folder;
  std::filesystem::path data;
  std::filesystem::path lock;
};

class Disk {
 public:
  /// `run` outlives it.
  Disk(RunContext& run, DiskPaths paths, Counting counting);

  FakeFileSystem files;
  const DiskPaths paths;
  LockObserver lockObserver;
  FileObserver fileObserver;

  // What the world does to it.

  /// What a fault strikes.
  enum class Extent { nothing, dataFile, lockFile, everything };
  /// Nothing can be written any more.
  void setFull(Extent extent) { full_ = extent; }
  /// Nothing can be read, written or looked up any more.
  void setForbidden(Extent extent);
  /// Every step takes up to so long; zero for a disk that takes no time.
  void setSlowness(std::chrono::nanoseconds longest) { slowness_ = longest; }
  /// How probably a program loses its turn before a step.
  void setInterruptions(double probability) { interruptions_ = probability; }
  /// Puts bytes in the place of the data file, or removes it.
  void tamper(std::optional<std::string> bytes);

  /// From now on the steps of `program` count as its own; null when none runs.
  void setUser(Turn* program) { user_ = program; }
  [[nodiscard]] Turn* user() const { return user_; }

 private:
  /// As a user who has looked into it would; else the programs would run out of names for more.
  void removeWhatWasKeptAside();
  [[nodiscard]] FakeFileSystem::Verdict judge(FileStep step, const std::filesystem::path& path);
  [[nodiscard]] bool strikes(Extent extent, const std::filesystem::path& path) const;
  void delay(Turn& program);

  RunContext& run_;
  Extent full_ = Extent::nothing;
  Extent forbidden_ = Extent::nothing;
  std::chrono::nanoseconds slowness_{};
  double interruptions_ = 0;
  Turn* user_ = nullptr;
};

/// One program's view of the disk, which tells the observers what it does and found. Once the
/// program is killed, nothing reaches the disk any more.
class ProgramFiles final : public FileSystem {
 public:
  /// Both outlive it.
  ProgramFiles(Disk& disk, Turn& program) : disk_(disk), program_(program) {}

  [[nodiscard]] std::expected<FileAttributes, std::error_code> attributes(
      const std::filesystem::path& path) const override;
  [[nodiscard]] std::expected<FileContents, std::error_code> readFile(
      const std::filesystem::path& path, std::size_t maximumBytes) const override;
  [[nodiscard]] std::expected<FileAttributes, std::error_code> replaceFile(
      const std::filesystem::path& path, std::string_view bytes) override;
  [[nodiscard]] std::expected<void, std::error_code> createEmptyFile(
      const std::filesystem::path& path) override;
  [[nodiscard]] std::expected<void, std::error_code> overwriteFile(
      const std::filesystem::path& path, std::string_view bytes) override;
  [[nodiscard]] std::expected<std::filesystem::path, std::error_code> keepAside(
      const std::filesystem::path& path) override;
  [[nodiscard]] std::expected<void, std::error_code> removeFile(
      const std::filesystem::path& path) override;

 private:
  [[nodiscard]] bool isLock(const std::filesystem::path& path) const {
    return path.native() == disk_.paths.lock.native();
  }
  void beginLockOperation(const std::filesystem::path& path) const;
  template <typename Operation>
  auto perform(Operation operation) const -> decltype(operation());

  Disk& disk_;
  Turn& program_;
};

}  // namespace lanternfold::simulation
