// Why a sample of the traffic could not be taken or kept, for a user: which file, what is wrong
// with it, what to do.
//
// Made by: the wiring, for the recorder and for whoever takes a single sample.
#pragma once

#include <filesystem>
#include <string>

#include "NetworkMonitor/Metrics/ConnectionMetricsError.h"
#include "Platform/FileSystem.h"

namespace lanternfold {

/// A clause about a sample into the storage in `folder`. Where the error does not tell the cause,
/// it is looked for in `files`, at worst by making a file in the folder that is removed at once.
/// Blocks for the disk.
[[nodiscard]] std::string sampleFailure(const ConnectionMetricsError& error, FileSystem& files,
                                        const std::filesystem::path& folder);

}  // namespace lanternfold
