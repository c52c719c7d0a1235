#include "PlatformLinux/System/LinuxConnectionMetricsReader.h"

#include <utility>

#include "PlatformLinux/System/LinkCounterSource.h"
#include "PlatformLinux/System/ProcNetDevCounterSource.h"
#include "PlatformLinux/System/StatisticsCounterSource.h"

namespace lanternfold {

namespace {

LinuxConnectionMetricsReader::Sources sourcesOfThisSystem() {
  LinuxConnectionMetricsReader::Sources sources;
  sources.push_back(std::make_unique<StatisticsCounterSource>());
  sources.push_back(std::make_unique<LinkCounterSource>());
  sources.push_back(std::make_unique<ProcNetDevCounterSource>());
  return sources;
}

}  // namespace

LinuxConnectionMetricsReader::LinuxConnectionMetricsReader()
    : LinuxConnectionMetricsReader(sourcesOfThisSystem()) {}

LinuxConnectionMetricsReader::LinuxConnectionMetricsReader(Sources sources)
    : sources_(std::move(sources)) {}

std::expected<ConnectionMetricsMap, ConnectionMetricsError> LinuxConnectionMetricsReader::read() {
  const std::lock_guard lock(mutex_);
  for (const auto& source : sources_) {
    auto metrics = source->read();
    if (metrics) return std::move(*metrics);
  }
  return std::unexpected(ConnectionMetricsReaderError::failedGetIf);
}

}  // namespace lanternfold
