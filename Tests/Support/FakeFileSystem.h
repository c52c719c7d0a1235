// A file system in memory, shared by every simulated program of a test, that fails, fills up or
// stops at the step that the test names.
//
// An operation is made of steps (`FileStep`) in the order in which the system's own would be taken:
// `replaceFile` makes a temporary file beside the target, writes it in two parts, synchronises it,
// renames it, and synchronises the folder. Faults strike before a step.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Clock.h"
#include "Platform/FileSystem.h"

namespace lanternfold {

enum class FileStep {
  lookUp,             ///< attributes
  openForReading,     ///< readFile
  read,               ///< readFile
  link,               ///< keepAside
  createTemporary,    ///< replaceFile
  create,             ///< createEmptyFile
  openForWriting,     ///< overwriteFile, which cuts the file to nothing in the same step
  writeFirstPart,     ///< replaceFile, overwriteFile: half of the bytes
  writeRest,          ///< replaceFile, overwriteFile
  synchronise,        ///< replaceFile, overwriteFile
  rename,             ///< replaceFile
  synchroniseFolder,  ///< replaceFile; the new file is in its place already
  remove,             ///< removeFile
};

/// Permissions follow the system's rules: a file is read and overwritten by its own, while making,
/// replacing and removing one asks those of its folder. One thread. What stands below "Set up by a
/// test" is no step, and neither fails nor takes time.
class FakeFileSystem final : public FileSystem {
 public:
  using Path = std::filesystem::path;
  /// What a step does: go on, or fail with an error.
  using Verdict = std::optional<std::errc>;

  /// Dates are those of `clock`, which outlives the file system. Only the root folder is there.
  explicit FakeFileSystem(const Clock& clock);
  ~FakeFileSystem() override;

  // Set up by a test.

  /// Makes a folder and those above it.
  void makeFolder(const Path& path);
  /// Puts a file there as another program would by a replacement: new number, date of now. Makes
  /// the folders above it.
  void putFile(const Path& path, std::string bytes);
  /// Puts something there that is neither a file nor a folder, such as a pipe.
  void putSpecialFile(const Path& path);
  /// The bytes of a file; none when there is no file.
  [[nodiscard]] std::optional<std::string> bytes(const Path& path) const;
  /// Everything below `folder`, in the order of the paths.
  [[nodiscard]] std::vector<Path> paths(const Path& folder = "/") const;
  /// Forgets what stands there, a folder with everything in it.
  void erase(const Path& path);

  /// A file can no longer be read; below a folder nothing can be reached.
  void denyReading(const Path& path);
  /// A file can no longer be overwritten; in a folder nothing can be made, replaced or removed.
  void denyWriting(const Path& path);
  void allowAll(const Path& path);

  /// Modification dates are cut to whole ticks since 1970, as of a file system with a coarse clock.
  /// One nanosecond unless set.
  void setDateTick(std::chrono::nanoseconds tick) { dateTick_ = tick; }
  /// A new file gets the lowest number that no file has, as many file systems do; else no number
  /// comes twice.
  void setReusesFileNumbers(bool reuses) { reusesFileNumbers_ = reuses; }
  void setModificationDate(const Path& path, std::chrono::system_clock::time_point date);

  /// A slow disk: every step sleeps so long on the clock before it is taken. None unless set.
  void setStepDuration(std::chrono::nanoseconds duration) { stepDuration_ = duration; }

  // Faults.

  /// The disk takes `bytes` more, and what removed files give back; then no_space_on_device, with
  /// the part that fitted written. Unlimited unless set; none for unlimited.
  void setFreeBytes(std::optional<std::size_t> bytes) { freeBytes_ = bytes; }
  /// The step that comes `stepsFromNow` steps after the next one (0: the next one) fails, once.
  void failStep(std::size_t stepsFromNow, std::errc error);
  /// In the place of that step the program ends: the disk stays as it is, temporary files included,
  /// and every step fails with owner_dead until `restart`.
  void crashAtStep(std::size_t stepsFromNow);
  [[nodiscard]] bool hasCrashed() const { return hasCrashed_; }
  void restart() { hasCrashed_ = false; }
  /// Asked before every step, after the faults above; none to ask nobody. It may use this file
  /// system itself, as another program that comes in between; steps it takes do not ask it again.
  void beforeStep(std::function<Verdict(FileStep step, const Path& path)> judge);
  /// The same, but steps that are taken before the judge has answered ask it too: for a world whose
  /// programs lose their turn inside of it. It may throw, which ends the operation where it stands,
  /// temporary file included.
  void beforeEveryStep(std::function<Verdict(FileStep step, const Path& path)> judge);
  /// How many steps were taken or failed so far, by all programs.
  [[nodiscard]] std::size_t stepCount() const { return stepCount_; }

  // The seam.

  [[nodiscard]] std::expected<FileAttributes, std::error_code> attributes(
      const Path& path) const override;
  [[nodiscard]] std::expected<FileContents, std::error_code> readFile(
      const Path& path, std::size_t maximumBytes) const override;
  [[nodiscard]] std::expected<FileAttributes, std::error_code> replaceFile(
      const Path& path, std::string_view bytes) override;
  [[nodiscard]] std::expected<void, std::error_code> createEmptyFile(const Path& path) override;
  [[nodiscard]] std::expected<void, std::error_code> overwriteFile(const Path& path,
                                                                   std::string_view bytes) override;
  [[nodiscard]] std::expected<Path, std::error_code> keepAside(const Path& path) override;
  [[nodiscard]] std::expected<void, std::error_code> removeFile(const Path& path) override;

 private:
  struct Node;
  using NodePointer = std::shared_ptr<Node>;
  template <typename Value>
  using Result = std::expected<Value, std::error_code>;

  /// Takes a step: whether the program goes on with it.
  [[nodiscard]] Result<void> step(FileStep step, const Path& path) const;
  [[nodiscard]] Verdict plannedFault() const;

  [[nodiscard]] NodePointer nodeAt(const Path& path) const;
  /// The same, reached through folders that can be searched.
  [[nodiscard]] Result<NodePointer> find(const Path& path) const;
  /// The folder that `path` stands in, when entries can be made and removed there.
  [[nodiscard]] Result<void> checkFolderOf(const Path& path) const;
  NodePointer makeFile(const Path& path);
  [[nodiscard]] std::uint64_t nextFileNumber();
  void removeNode(const Path& path);
  void cutToNothing(Node& file);
  [[nodiscard]] Result<void> append(Node& file, std::string_view bytes);
  [[nodiscard]] Result<void> writeInParts(const Path& path, Node& file, std::string_view bytes);
  [[nodiscard]] Result<FileAttributes> replaceBy(const Path& temporary, const Path& path,
                                                 std::string_view bytes);
  [[nodiscard]] std::chrono::system_clock::time_point dateOfNow() const;

  const Clock& clock_;
  std::map<Path, NodePointer> nodes_;
  std::uint64_t lastFileNumber_ = 0;
  std::uint64_t lastTemporaryNumber_ = 0;
  bool reusesFileNumbers_ = false;
  std::chrono::nanoseconds dateTick_{1};
  std::chrono::nanoseconds stepDuration_{0};
  std::optional<std::size_t> freeBytes_;

  // Looking is a step too.
  mutable std::size_t stepCount_ = 0;
  mutable std::map<std::size_t, Verdict> plannedFaults_;  // by step number; none is a crash
  mutable bool hasCrashed_ = false;
  mutable bool isJudging_ = false;
  bool asksAgain_ = false;
  std::function<Verdict(FileStep, const Path&)> judge_;
};

}  // namespace lanternfold
