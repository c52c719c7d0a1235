// Wires the recorder of a machine's traffic and the file that it keeps.
#pragma once

#include <expected>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "CommandLine/Machine.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsRecorder.h"
#include "NetworkMonitor/Metrics/FileConnectionMetricsStorage.h"

namespace lanternfold {

/// The name of the storage in its folder.
inline constexpr const char* metricsStorageName = "default";

/// The file of the storage in `folder` that ends in `ending`.
[[nodiscard]] std::filesystem::path metricsFile(const std::filesystem::path& folder,
                                                std::string_view ending);

/// The group's folder; without a group, or when its folder cannot be had (which is a line among the
/// diagnostics then), that of what belongs to no group. When that cannot be had either, the clause
/// that says which folder, why and what to do.
[[nodiscard]] std::expected<std::filesystem::path, std::string> metricsFolder(
    const Machine& machine, const std::optional<std::string>& appGroupId);

[[nodiscard]] std::shared_ptr<FileConnectionMetricsStorage> makeMetricsStorage(
    const Machine& machine, const std::filesystem::path& folder);

/// Over the machine's 64-bit counters, not yet started. `storage` keeps its file in `folder`.
[[nodiscard]] std::shared_ptr<ConnectionMetricsRecorder> makeMetricsRecorder(
    const Machine& machine, std::shared_ptr<ConnectionMetricsStorage> storage,
    const std::filesystem::path& folder);

}  // namespace lanternfold
