// Wires the recorder of a machine's traffic and the file that it keeps.
//
// Made by: composition. Used by: the production graph of the monitor, and whoever only records.
#pragma once

#include <expected>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "NetworkMonitor/Metrics/ConnectionMetricsRecorder.h"
#include "NetworkMonitor/Metrics/FileConnectionMetricsStorage.h"
#include "Platform/Platform.h"

namespace lanternfold {

/// The group's shared container; without a group, or when its container cannot be had (which is a
/// line among the diagnostics then), the storage's own default location. When that cannot be had
/// either, the clause that says which folder, why and what to do.
[[nodiscard]] std::expected<std::filesystem::path, std::string> metricsFolder(
    const Platform& platform, const std::optional<std::string>& appGroupId);

[[nodiscard]] std::shared_ptr<FileConnectionMetricsStorage> makeMetricsStorage(
    const Platform& platform, const std::filesystem::path& folder);

/// Over `reader`, not yet started. `storage` keeps its file in `folder`.
[[nodiscard]] std::shared_ptr<ConnectionMetricsRecorder> makeMetricsRecorder(
    const Platform& platform, std::shared_ptr<ConnectionMetricsReader> reader,
    std::shared_ptr<ConnectionMetricsStorage> storage, const std::filesystem::path& folder);

}  // namespace lanternfold
