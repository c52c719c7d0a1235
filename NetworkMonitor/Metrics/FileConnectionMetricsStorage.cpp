#include "NetworkMonitor/Metrics/FileConnectionMetricsStorage.h"

#include <utility>

#include "NetworkMonitor/Metrics/ConnectionMetricsFileJson.h"

namespace lanternfold {
namespace {

std::filesystem::path fileOf(const std::filesystem::path& folder, std::string_view name,
                             std::string_view ending) {
  std::string fileName = "connection-metrics-storage_";
  fileName.append(name).append(ending);
  return folder / fileName;
}

std::optional<ConnectionMetricsStorage::Date> dateOf(
    const std::expected<FileAttributes, std::error_code>& attributes) {
  return attributes ? std::optional(attributes->modificationDate) : std::nullopt;
}

std::unexpected<MetricsSaveError> saveFailure(const std::filesystem::path& url,
                                              const std::string& reason,
                                              std::error_code cause = {}) {
  return std::unexpected(MetricsSaveError{
      .sentence = url.string() + " could not be written: " + reason, .cause = cause});
}

std::unexpected<MetricsSaveError> saveFailure(const std::filesystem::path& url,
                                              std::error_code cause) {
  return saveFailure(url, cause.message(), cause);
}

}  // namespace

FileConnectionMetricsStorage::FileConnectionMetricsStorage(Environment environment,
                                                           const std::filesystem::path& baseUrl,
                                                           std::string_view name)
    : environment_(environment),
      storageUrl_(fileOf(baseUrl, name, ".json")),
      name_(name),
      lock_({.files = environment.files,
             .clock = environment.clock,
             .dispatch = environment.dispatch},
            fileOf(baseUrl, name, ".lock")),
      innerStorage_(environment.clock) {
  reload();
}

std::optional<ConnectionMetricsStorage::Date> FileConnectionMetricsStorage::lastRegisterDate()
    const {
  return dateOf(attributes());
}

void FileConnectionMetricsStorage::registerMetrics(const ConnectionMetrics& metrics,
                                                   std::string_view interfaceName,
                                                   ConnectionMetricsType type) {
  innerStorage_.registerMetrics(metrics, interfaceName, type);
}

std::optional<ConnectionMetrics> FileConnectionMetricsStorage::metrics(
    std::string_view interfaceName, ConnectionMetricsType type) {
  reloadIfNewer(attributes());
  return innerStorage_.metrics(interfaceName, type);
}

ConnectionMetricsStorage::Remembered FileConnectionMetricsStorage::remembered(
    std::string_view interfaceName) {
  const Attributes seenNow = attributes();
  reloadIfNewer(seenNow);
  Remembered remembered = innerStorage_.remembered(interfaceName);
  remembered.lastRegisterDate = dateOf(seenNow);
  return remembered;
}

ConnectionMetricsMap FileConnectionMetricsStorage::allMetrics(ConnectionMetricsType type) {
  reloadIfNewer(attributes());
  return innerStorage_.allMetrics(type);
}

void FileConnectionMetricsStorage::reset() {
  innerStorage_.reset();
  // What stands in the file now is what is to be forgotten, loaded before or not.
  if (const auto found = attributes()) seen_ = *found;
}

std::expected<void, LockError> FileConnectionMetricsStorage::lock() {
  auto locked = lock_.lock();
  // A sample of a machine without interfaces reads nothing before it saves.
  if (locked) reloadIfNewer(attributes());
  return locked;
}

std::expected<void, MetricsSaveError> FileConnectionMetricsStorage::save() {
  const auto encoded = encodeConnectionMetricsFile(innerStorage_.data());
  if (!encoded) return saveFailure(storageUrl_, describe(encoded.error()));
  if (auto kept = keepWhatWasNotRestored(); !kept) return kept;
  const auto written = environment_.files.replaceFile(storageUrl_, encoded->text);
  if (!written) return saveFailure(storageUrl_, written.error());
  for (std::size_t i = 0; i < encoded->recordsLeftOut; ++i) {
    environment_.log.line("Failed to encode ConnectionMetrics");
  }
  seen_ = *written;
  hasFailedToRestore_ = false;
  return {};
}

std::expected<void, MetricsSaveError> FileConnectionMetricsStorage::keepWhatWasNotRestored() {
  if (!hasFailedToRestore_) return {};
  const auto found = attributes();
  if (!found || keptAside_ == *found) return {};
  const auto name = environment_.files.keepAside(storageUrl_);
  if (!name && name.error() == std::errc::file_exists) {
    return saveFailure(
        storageUrl_,
        "it could not be restored, and there are too many kept aside already; look "
        "into the files beside it that end in \".damaged-\" and a number, and remove "
        "them");
  }
  if (!name) return saveFailure(storageUrl_, name.error());
  keptAside_ = *found;
  environment_.log.line("The file that could not be restored was kept as: " + name->string());
  return {};
}

void FileConnectionMetricsStorage::reloadIfNewer(const Attributes& attributes) {
  if (isNewer(attributes)) reload();
}

bool FileConnectionMetricsStorage::isNewer(const Attributes& attributes) const {
  if (!attributes || !seen_) return true;
  // Any difference tells: two replacements within one tick of the file system's clock have the same
  // date, a wall clock that was set back gives an earlier one, and file systems give the number of
  // a file that is gone to the next one.
  return *attributes != *seen_;
}

void FileConnectionMetricsStorage::reload() {
  const auto contents = environment_.files.readFile(storageUrl_, longestConnectionMetricsFileBytes);
  if (!contents) {
    const bool isMissing = contents.error() == std::errc::no_such_file_or_directory;
    const std::string fault = isMissing ? "" : contents.error().message();
    if (fault != std::exchange(readFault_, fault) && !isMissing) reportFailedRestore(fault);
    hasFailedToRestore_ = !isMissing;
    return;
  }
  readFault_.clear();
  seen_ = contents->attributes;
  auto data = decodeConnectionMetricsFile(contents->bytes);
  hasFailedToRestore_ = !data;
  if (!data) {
    reportFailedRestore(describe(data.error()));
    return;
  }
  innerStorage_ = InMemoryConnectionMetricsStorage(environment_.clock, *std::move(data),
                                                   contents->attributes.modificationDate);
}

void FileConnectionMetricsStorage::reportFailedRestore(const std::string& reason) {
  environment_.log.line("Failed to restore from file: " + storageUrl_.string() + " - " + reason);
}

}  // namespace lanternfold
