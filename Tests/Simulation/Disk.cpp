#include "Tests/Simulation/Disk.h"

#include <algorithm>
#include <array>
#include <utility>

namespace lanternfold::simulation {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

bool writes(FileStep step) {
  constexpr std::array writing{FileStep::link,           FileStep::createTemporary,
                               FileStep::create,         FileStep::openForWriting,
                               FileStep::writeFirstPart, FileStep::writeRest,
                               FileStep::synchronise};
  return std::ranges::find(writing, step) != writing.end();
}

}  // namespace

Disk::Disk(RunContext& run, DiskPaths where, Counting counting)
    : files(run.clock),
      paths(std::move(where)),
      lockObserver(run),
      fileObserver(run, lockObserver, counting),
      run_(run) {
  files.makeFolder(paths.folder);
  files.beforeEveryStep(
      [this](FileStep step, const std::filesystem::path& path) { return judge(step, path); });
}

void Disk::setForbidden(Extent extent) {
  removeWhatWasKeptAside();
  forbidden_ = extent;
}

void Disk::removeWhatWasKeptAside() {
  for (const auto& path : files.paths(paths.folder)) {
    if (path.native().starts_with(paths.data.native() + ".damaged-")) files.erase(path);
  }
}

void Disk::tamper(std::optional<std::string> bytes) {
  setUser(nullptr);
  removeWhatWasKeptAside();
  if (bytes) {
    files.putFile(paths.data, *bytes);
  } else {
    files.erase(paths.data);
  }
  fileObserver.tamperedWith(std::move(bytes));
}

FakeFileSystem::Verdict Disk::judge(FileStep step, const std::filesystem::path& path) {
  if (!user_) return std::nullopt;
  Turn& program = *user_;
  const bool isData = path.native() == paths.data.native();
  if (step == FileStep::synchroniseFolder && isData) fileObserver.replaced(program);
  delay(program);
  setUser(&program);
  try {
    program.step();
  } catch (const Killed&) {
    if (isData && step > FileStep::createTemporary) {
      run_.log.add(Happening::killedInsideSave, program.number(), static_cast<int>(step));
    }
    throw;
  }
  // The file has been renamed: what is left can no longer be refused.
  if (step == FileStep::synchroniseFolder) return std::nullopt;
  if (strikes(forbidden_, path)) {
    run_.log.add(Happening::writeRefused, program.number());
    return std::errc::permission_denied;
  }
  if (strikes(full_, path) && writes(step)) {
    run_.log.add(Happening::writeRefused, program.number());
    return std::errc::no_space_on_device;
  }
  return std::nullopt;
}

bool Disk::strikes(Extent extent, const std::filesystem::path& path) const {
  switch (extent) {
    case Extent::nothing:
      return false;
    case Extent::dataFile:
      return path.native() == paths.data.native();
    case Extent::lockFile:
      return path.native() == paths.lock.native();
    case Extent::everything:
      return true;
  }
  return false;
}

void Disk::delay(Turn& program) {
  std::chrono::nanoseconds duration{};
  const bool isInterrupted = interruptions_ > 0 && run_.random.chance(interruptions_);
  if (slowness_ > duration) duration = run_.random.between(std::chrono::nanoseconds{}, slowness_);
  if (isInterrupted) duration += run_.random.between(std::chrono::nanoseconds{}, microseconds(300));
  if (!isInterrupted && duration == std::chrono::nanoseconds{}) return;
  if (duration > milliseconds(500)) run_.log.add(Happening::slowerThanLease, program.number());
  program.holdUp(duration);
}

template <typename Operation>
auto ProgramFiles::perform(Operation operation) const -> decltype(operation()) {
  if (program_.isKilled()) return std::unexpected(std::make_error_code(std::errc::owner_dead));
  disk_.setUser(&program_);
  auto result = operation();
  disk_.setUser(nullptr);
  return result;
}

void ProgramFiles::beginLockOperation(const std::filesystem::path& path) const {
  if (isLock(path) && !program_.isKilled()) disk_.lockObserver.began(program_);
}

std::expected<FileAttributes, std::error_code> ProgramFiles::attributes(
    const std::filesystem::path& path) const {
  beginLockOperation(path);
  auto result = perform([&] { return disk_.files.attributes(path); });
  if (program_.isKilled()) return result;
  if (!isLock(path)) {
    disk_.fileObserver.lookedUp(program_, result);
  } else if (!result && result.error() == std::errc::no_such_file_or_directory) {
    disk_.lockObserver.foundMissing(program_);
  }
  return result;
}

std::expected<FileContents, std::error_code> ProgramFiles::readFile(
    const std::filesystem::path& path, std::size_t maximumBytes) const {
  if (isLock(path) && !program_.isKilled() && disk_.lockObserver.beginsAnotherStep(program_)) {
    disk_.fileObserver.abandoned(program_);
    disk_.lockObserver.restsOrEnded(program_);
  }
  beginLockOperation(path);
  auto result = perform([&] { return disk_.files.readFile(path, maximumBytes); });
  if (program_.isKilled()) return result;
  if (isLock(path)) {
    disk_.lockObserver.looked(program_, result);
  } else {
    disk_.fileObserver.loaded(program_, result);
  }
  return result;
}

std::expected<FileAttributes, std::error_code> ProgramFiles::replaceFile(
    const std::filesystem::path& path, std::string_view bytes) {
  if (!program_.isKilled()) disk_.fileObserver.saves(program_, bytes);
  auto result = perform([&] { return disk_.files.replaceFile(path, bytes); });
  if (!program_.isKilled()) disk_.fileObserver.saveEnded(program_, result);
  return result;
}

std::expected<void, std::error_code> ProgramFiles::createEmptyFile(
    const std::filesystem::path& path) {
  auto result = perform([&] { return disk_.files.createEmptyFile(path); });
  if (!program_.isKilled()) disk_.lockObserver.created(program_, result.has_value());
  return result;
}

std::expected<void, std::error_code> ProgramFiles::overwriteFile(const std::filesystem::path& path,
                                                                 std::string_view bytes) {
  auto result = perform([&] { return disk_.files.overwriteFile(path, bytes); });
  if (program_.isKilled()) return result;
  disk_.lockObserver.written(program_, bytes, result.has_value());
  if (result) disk_.fileObserver.lockTaken(program_);
  return result;
}

std::expected<std::filesystem::path, std::error_code> ProgramFiles::keepAside(
    const std::filesystem::path& path) {
  auto result = perform([&] { return disk_.files.keepAside(path); });
  if (!program_.isKilled() && !result) disk_.fileObserver.keepingAsideFailed(program_);
  return result;
}

std::expected<void, std::error_code> ProgramFiles::removeFile(const std::filesystem::path& path) {
  const bool isUnlocking = disk_.lockObserver.holds(program_);
  beginLockOperation(path);
  auto result = perform([&] { return disk_.files.removeFile(path); });
  if (program_.isKilled()) return result;
  disk_.lockObserver.removed(program_, result.has_value());
  if (isUnlocking) disk_.fileObserver.unlocked(program_, result.has_value());
  return result;
}

}  // namespace lanternfold::simulation
