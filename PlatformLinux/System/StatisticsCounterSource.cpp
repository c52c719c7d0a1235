#include "PlatformLinux/System/StatisticsCounterSource.h"

#include <utility>

#include <linux/netlink.h>
#include <linux/rtnetlink.h>

#include "PlatformLinux/Netlink/StatisticsMapping.h"
#include "PlatformLinux/System/TableDump.h"

namespace lanternfold {

namespace {

// So many full drains in a row mean that events come faster than they can be read.
constexpr int mostDrains = 4;

}  // namespace

std::expected<ConnectionMetricsMap, NetworkKernelError> StatisticsCounterSource::read() {
  auto metrics = readWithSockets();
  if (!metrics) {
    sockets_.reset();
    directoryIsComplete_ = false;
  }
  return metrics;
}

std::expected<ConnectionMetricsMap, NetworkKernelError> StatisticsCounterSource::readWithSockets() {
  if (const auto opened = open(); !opened) return std::unexpected(opened.error());
  if (const auto dumped = dumpStatistics(); !dumped) return std::unexpected(dumped.error());
  if (const auto taken = takeInEvents(); !taken) return std::unexpected(taken.error());
  if (directoryIsComplete_) {
    auto mapping = mapStatistics(statistics_, directory_);
    if (!mapping.hasUnknownLinks || unknownLinksAreNameless_) return std::move(mapping.metrics);
  }
  if (const auto dumped = dumpLinks(); !dumped) return std::unexpected(dumped.error());
  auto mapping = mapStatistics(statistics_, directory_);
  unknownLinksAreNameless_ = mapping.hasUnknownLinks;
  return std::move(mapping.metrics);
}

std::expected<void, NetworkKernelError> StatisticsCounterSource::open() {
  if (sockets_) return {};
  auto events = NetlinkEventSocket::open(RTMGRP_LINK);
  if (!events) return std::unexpected(events.error());
  auto dumps = NetlinkSocket::open(NETLINK_ROUTE);
  if (!dumps) return std::unexpected(dumps.error());
  sockets_.emplace(std::move(*dumps), std::move(*events));
  return {};
}

std::expected<void, NetworkKernelError> StatisticsCounterSource::dumpStatistics() {
  auto statistics =
      dumpTable(sockets_->dumps, statisticsDumpRequest(), decodeStatisticsMessage,
                &StatisticsMessage::interfaceIndex, &StatisticsMessage::interfaceIndex);
  if (!statistics) return std::unexpected(statistics.error());
  statistics_ = *std::move(statistics);
  return {};
}

std::expected<void, NetworkKernelError> StatisticsCounterSource::dumpLinks() {
  const auto links = dumpTable(sockets_->dumps, linkDumpRequest(), decodeLinkMessage,
                               &LinkMessage::index, &LinkMessage::index, &LinkMessage::name);
  directory_.clear();
  directoryIsComplete_ = links.has_value();
  if (!links) return std::unexpected(links.error());
  for (const LinkMessage& link : *links) directory_.apply(link);
  // What came and went while the dump was made is among the events.
  return takeInEvents();
}

std::expected<void, NetworkKernelError> StatisticsCounterSource::takeInEvents() {
  const auto take = [this](const NetlinkMessage& message) {
    unknownLinksAreNameless_ = false;
    const auto link = decodeLinkMessage(message);
    if (link) directory_.apply(*link);
  };
  for (int drain = 0; drain < mostDrains; ++drain) {
    const auto outcome = sockets_->events.drain(take);
    if (!outcome) return std::unexpected(outcome.error());
    if (*outcome == NetlinkEventOutcome::drained) return {};
    if (*outcome == NetlinkEventOutcome::overflowed) directoryIsComplete_ = false;
  }
  directoryIsComplete_ = false;
  return {};
}

}  // namespace lanternfold
