#include "Tests/Support/FakeFileSystem.h"

#include <algorithm>
#include <set>
#include <utility>

#include "Support/FatalError.h"

namespace lanternfold {
namespace {

using Path = std::filesystem::path;

Path normal(const Path& path) {
  if (!path.is_absolute()) fatalError("a fake file system was given a path that is not absolute");
  const Path result = path.lexically_normal();
  return result.has_filename() || result == result.root_path() ? result : result.parent_path();
}

std::unexpected<std::error_code> failure(std::errc error) {
  return std::unexpected(std::make_error_code(error));
}

}  // namespace

struct FakeFileSystem::Node {
  enum class Kind { file, folder, special };

  Kind kind = Kind::file;
  std::string bytes;
  std::chrono::system_clock::time_point modificationDate;
  std::uint64_t fileNumber = 0;
  bool canRead = true;
  bool canWrite = true;

  [[nodiscard]] FileAttributes attributes() const {
    return {
        .modificationDate = modificationDate, .sizeBytes = bytes.size(), .fileNumber = fileNumber};
  }
  /// Why it cannot be opened as a file; none when it can.
  [[nodiscard]] Verdict refusal() const {
    if (kind == Kind::folder) return std::errc::is_a_directory;
    if (kind == Kind::special) return std::errc::invalid_argument;
    return std::nullopt;
  }
};

FakeFileSystem::FakeFileSystem(const Clock& clock) : clock_(clock) { makeFolder("/"); }

FakeFileSystem::~FakeFileSystem() = default;

void FakeFileSystem::makeFolder(const Path& path) {
  const Path folder = normal(path);
  if (const NodePointer node = nodeAt(folder)) {
    if (node->kind != Node::Kind::folder) fatalError("a test's folder stands where a file is");
    return;
  }
  if (folder.has_relative_path()) makeFolder(folder.parent_path());
  makeFile(folder)->kind = Node::Kind::folder;
}

void FakeFileSystem::putFile(const Path& path, std::string bytes) {
  makeFolder(normal(path).parent_path());
  makeFile(normal(path))->bytes = std::move(bytes);
}

void FakeFileSystem::putSpecialFile(const Path& path) {
  putFile(path, "");
  nodeAt(normal(path))->kind = Node::Kind::special;
}

std::optional<std::string> FakeFileSystem::bytes(const Path& path) const {
  const NodePointer node = nodeAt(normal(path));
  if (!node || node->kind != Node::Kind::file) return std::nullopt;
  return node->bytes;
}

std::vector<FakeFileSystem::Path> FakeFileSystem::paths(const Path& folder) const {
  const Path root = normal(folder);
  std::vector<Path> result;
  for (const auto& [path, node] : nodes_) {
    const auto difference = std::ranges::mismatch(root, path);
    if (difference.in1 == root.end() && difference.in2 != path.end()) result.push_back(path);
  }
  return result;
}

void FakeFileSystem::erase(const Path& path) {
  for (const Path& below : paths(path)) removeNode(below);
  removeNode(normal(path));
}

void FakeFileSystem::denyReading(const Path& path) { nodeAt(normal(path))->canRead = false; }

void FakeFileSystem::denyWriting(const Path& path) { nodeAt(normal(path))->canWrite = false; }

void FakeFileSystem::allowAll(const Path& path) {
  const NodePointer node = nodeAt(normal(path));
  node->canRead = true;
  node->canWrite = true;
}

void FakeFileSystem::setModificationDate(const Path& path,
                                         std::chrono::system_clock::time_point date) {
  nodeAt(normal(path))->modificationDate = date;
}

void FakeFileSystem::failStep(std::size_t stepsFromNow, std::errc error) {
  plannedFaults_.insert_or_assign(stepCount_ + stepsFromNow, error);
}

void FakeFileSystem::crashAtStep(std::size_t stepsFromNow) {
  plannedFaults_.insert_or_assign(stepCount_ + stepsFromNow, std::nullopt);
}

void FakeFileSystem::beforeStep(std::function<Verdict(FileStep, const Path&)> judge) {
  judge_ = std::move(judge);
}

void FakeFileSystem::beforeEveryStep(std::function<Verdict(FileStep, const Path&)> judge) {
  judge_ = std::move(judge);
  asksAgain_ = true;
}

std::expected<FileAttributes, std::error_code> FakeFileSystem::attributes(const Path& path) const {
  if (const auto taken = step(FileStep::lookUp, path); !taken)
    return std::unexpected(taken.error());
  const auto node = find(path);
  if (!node) return std::unexpected(node.error());
  return (*node)->attributes();
}

std::expected<FileContents, std::error_code> FakeFileSystem::readFile(
    const Path& path, std::size_t maximumBytes) const {
  if (const auto taken = step(FileStep::openForReading, path); !taken) {
    return std::unexpected(taken.error());
  }
  const auto node = find(path);
  if (!node) return std::unexpected(node.error());
  if (const auto refusal = (*node)->refusal()) return failure(*refusal);
  if (!(*node)->canRead) return failure(std::errc::permission_denied);
  if (const auto taken = step(FileStep::read, path); !taken) return std::unexpected(taken.error());
  // The file that was opened, even if another one stands in its place by now.
  if ((*node)->bytes.size() > maximumBytes) return failure(std::errc::file_too_large);
  return FileContents{.bytes = (*node)->bytes, .attributes = (*node)->attributes()};
}

std::expected<FileAttributes, std::error_code> FakeFileSystem::replaceFile(const Path& path,
                                                                           std::string_view bytes) {
  Path temporary = normal(path);
  temporary.replace_filename("." + temporary.filename().string() + "." +
                             std::to_string(++lastTemporaryNumber_));
  auto result = replaceBy(temporary, path, bytes);
  if (!result && !hasCrashed_) removeNode(temporary);
  return result;
}

std::expected<void, std::error_code> FakeFileSystem::createEmptyFile(const Path& path) {
  if (auto taken = step(FileStep::create, path); !taken) return taken;
  const auto existing = find(path);
  if (!existing) {
    if (existing.error() != std::errc::no_such_file_or_directory) {
      return std::unexpected(existing.error());
    }
    if (auto allowed = checkFolderOf(path); !allowed) return allowed;
    makeFile(normal(path));
    return {};
  }
  if (const auto refusal = (*existing)->refusal()) return failure(*refusal);
  if (!(*existing)->canWrite) return failure(std::errc::permission_denied);
  cutToNothing(**existing);
  return {};
}

std::expected<void, std::error_code> FakeFileSystem::overwriteFile(const Path& path,
                                                                   std::string_view bytes) {
  if (auto taken = step(FileStep::openForWriting, path); !taken) return taken;
  const auto node = find(path);
  if (!node) return std::unexpected(node.error());
  if (const auto refusal = (*node)->refusal()) return failure(*refusal);
  if (!(*node)->canWrite) return failure(std::errc::permission_denied);
  cutToNothing(**node);
  return writeInParts(path, **node, bytes);
}

std::expected<FakeFileSystem::Path, std::error_code> FakeFileSystem::keepAside(const Path& path) {
  if (const auto taken = step(FileStep::link, path); !taken) return std::unexpected(taken.error());
  const auto file = find(path);
  if (!file) return std::unexpected(file.error());
  if (const auto refusal = (*file)->refusal()) return failure(*refusal);
  if (const auto allowed = checkFolderOf(path); !allowed) return std::unexpected(allowed.error());
  for (int number = 1; number <= mostKeptAside; ++number) {
    Path name = normal(path).native() + ".damaged-" + std::to_string(number);
    const NodePointer other = nodes_.emplace(name, *file).first->second;
    if (other == *file) return name;
  }
  return failure(std::errc::file_exists);
}

std::expected<void, std::error_code> FakeFileSystem::removeFile(const Path& path) {
  if (auto taken = step(FileStep::remove, path); !taken) return taken;
  const auto node = find(path);
  if (!node) return std::unexpected(node.error());
  if ((*node)->kind == Node::Kind::folder) return failure(std::errc::is_a_directory);
  if (auto allowed = checkFolderOf(path); !allowed) return allowed;
  removeNode(normal(path));
  return {};
}

FakeFileSystem::Result<void> FakeFileSystem::step(FileStep step, const Path& path) const {
  if (hasCrashed_) return failure(std::errc::owner_dead);
  if (const auto fault = plannedFault()) return failure(*fault);
  clock_.sleep(stepDuration_);
  if (!judge_ || isJudging_) return {};
  if (asksAgain_) {
    const Verdict verdict = judge_(step, path);
    return verdict ? Result<void>(failure(*verdict)) : Result<void>();
  }
  isJudging_ = true;
  const Verdict verdict = judge_(step, path);
  isJudging_ = false;
  if (verdict) return failure(*verdict);
  return {};
}

FakeFileSystem::Verdict FakeFileSystem::plannedFault() const {
  const auto planned = plannedFaults_.extract(stepCount_++);
  if (planned.empty()) return std::nullopt;
  if (!planned.mapped()) hasCrashed_ = true;
  return planned.mapped().value_or(std::errc::owner_dead);
}

FakeFileSystem::NodePointer FakeFileSystem::nodeAt(const Path& path) const {
  const auto found = nodes_.find(path);
  return found == nodes_.end() ? nullptr : found->second;
}

FakeFileSystem::Result<FakeFileSystem::NodePointer> FakeFileSystem::find(const Path& path) const {
  Path reached;
  NodePointer node;
  for (const Path& part : normal(path)) {
    if (node && node->kind != Node::Kind::folder) return failure(std::errc::not_a_directory);
    if (node && !node->canRead) return failure(std::errc::permission_denied);
    reached /= part;
    node = nodeAt(reached);
    if (!node) return failure(std::errc::no_such_file_or_directory);
  }
  return node;
}

FakeFileSystem::Result<void> FakeFileSystem::checkFolderOf(const Path& path) const {
  const auto folder = find(normal(path).parent_path());
  if (!folder) return std::unexpected(folder.error());
  if ((*folder)->kind != Node::Kind::folder) return failure(std::errc::not_a_directory);
  if (!(*folder)->canRead || !(*folder)->canWrite) return failure(std::errc::permission_denied);
  return {};
}

FakeFileSystem::NodePointer FakeFileSystem::makeFile(const Path& path) {
  removeNode(path);
  const auto node = std::make_shared<Node>();
  node->modificationDate = dateOfNow();
  node->fileNumber = nextFileNumber();
  nodes_.emplace(path, node);
  return node;
}

std::uint64_t FakeFileSystem::nextFileNumber() {
  if (!reusesFileNumbers_) return ++lastFileNumber_;
  std::set<std::uint64_t> taken;
  for (const auto& [path, node] : nodes_) taken.insert(node->fileNumber);
  std::uint64_t number = 1;
  while (taken.contains(number)) ++number;
  return number;
}

void FakeFileSystem::removeNode(const Path& path) {
  const auto removed = nodes_.extract(path);
  const bool wasItsOnlyName = std::ranges::none_of(nodes_, [&](const auto& other) {
    return !removed.empty() && other.second == removed.mapped();
  });
  if (!removed.empty() && wasItsOnlyName && freeBytes_) {
    *freeBytes_ += removed.mapped()->bytes.size();
  }
}

void FakeFileSystem::cutToNothing(Node& file) {
  if (freeBytes_) *freeBytes_ += file.bytes.size();
  file.bytes.clear();
  file.modificationDate = dateOfNow();
}

FakeFileSystem::Result<void> FakeFileSystem::append(Node& file, std::string_view bytes) {
  const std::size_t room = freeBytes_.value_or(bytes.size());
  const std::string_view fitting = bytes.substr(0, room);
  file.bytes += fitting;
  file.modificationDate = dateOfNow();
  if (freeBytes_) *freeBytes_ -= fitting.size();
  if (fitting.size() < bytes.size()) return failure(std::errc::no_space_on_device);
  return {};
}

FakeFileSystem::Result<void> FakeFileSystem::writeInParts(const Path& path, Node& file,
                                                          std::string_view bytes) {
  const std::size_t half = bytes.size() / 2;
  if (auto taken = step(FileStep::writeFirstPart, path); !taken) return taken;
  if (auto written = append(file, bytes.substr(0, half)); !written) return written;
  if (auto taken = step(FileStep::writeRest, path); !taken) return taken;
  if (auto written = append(file, bytes.substr(half)); !written) return written;
  return step(FileStep::synchronise, path);
}

FakeFileSystem::Result<FileAttributes> FakeFileSystem::replaceBy(const Path& temporary,
                                                                 const Path& path,
                                                                 std::string_view bytes) {
  const auto failed = [](const Result<void>& result) { return std::unexpected(result.error()); };
  if (const auto taken = step(FileStep::createTemporary, path); !taken) return failed(taken);
  if (const auto allowed = checkFolderOf(path); !allowed) return failed(allowed);
  const NodePointer file = makeFile(temporary);
  if (const auto written = writeInParts(path, *file, bytes); !written) return failed(written);
  if (const auto taken = step(FileStep::rename, path); !taken) return failed(taken);
  const NodePointer old = nodeAt(normal(path));
  if (const auto refusal = old ? old->refusal() : std::nullopt) return failure(*refusal);
  auto renamed = nodes_.extract(temporary);
  if (renamed.empty()) return failure(std::errc::no_such_file_or_directory);
  removeNode(normal(path));
  renamed.key() = normal(path);
  nodes_.insert(std::move(renamed));
  if (const auto taken = step(FileStep::synchroniseFolder, path); !taken) return failed(taken);
  return file->attributes();
}

std::chrono::system_clock::time_point FakeFileSystem::dateOfNow() const {
  const auto now = clock_.now();
  return now - now.time_since_epoch() % dateTick_;
}

}  // namespace lanternfold
