// Wires the recorder of a machine's traffic and the file that it keeps.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "CommandLine/Machine.h"
#include "NetworkMonitor/Metrics/ConnectionMetricsRecorder.h"
#include "NetworkMonitor/Metrics/FileConnectionMetricsStorage.h"

namespace lanternfold {

/// The name of the storage in its folder.
inline constexpr const char* metricsStorageName = "default";

/// The group's folder; without a group, or when its folder cannot be had, that of what belongs to
/// no group; none when that cannot be had either.
[[nodiscard]] std::optional<std::filesystem::path> metricsFolder(
    const Machine& machine, const std::optional<std::string>& appGroupId);

[[nodiscard]] std::shared_ptr<FileConnectionMetricsStorage> makeMetricsStorage(
    const Machine& machine, const std::filesystem::path& folder);

/// Over the machine's 64-bit counters, not yet started.
[[nodiscard]] std::shared_ptr<ConnectionMetricsRecorder> makeMetricsRecorder(
    const Machine& machine, std::shared_ptr<ConnectionMetricsStorage> storage);

/// A clause that says why a sample into the storage in `folder` failed, and what to do.
[[nodiscard]] std::string sampleFailure(const ConnectionMetricsError& error,
                                        const std::filesystem::path& folder);

/// The clause about a folder that cannot be had; the container has said why.
inline constexpr const char* noMetricsFolder =
    "there is no folder to keep it in; choose one with --data-dir";

}  // namespace lanternfold
