// Takes the looks at the kernel's tables that the path monitor compares.
//
// Made by: one path monitor each. Threads: one at a time.
#pragma once

#include <expected>

#include "Platform/NetworkKernel.h"
#include "PlatformLinux/Path/NetworkSnapshot.h"
#include "PlatformLinux/System/LinkSurvey.h"
#include "PlatformLinux/System/NetlinkSocket.h"

namespace lanternfold {

class NetworkSnapshotReader {
 public:
  /// Speaks of the network namespace of the calling thread. Errors: refused, failed.
  [[nodiscard]] static std::expected<NetworkSnapshotReader, NetworkKernelError> open(
      LinkSurvey survey);

  /// Four dumps: links, addresses, the routes of both families. Of a table that
  /// kept changing while it was read there is everything that stayed, and a machine without IPv6
  /// has no routes of that family. Errors: refused, malformed, failed.
  [[nodiscard]] std::expected<NetworkSnapshot, NetworkKernelError> read();

 private:
  NetworkSnapshotReader(LinkSurvey survey, NetlinkSocket socket)
      : survey_(std::move(survey)), socket_(std::move(socket)) {}

  [[nodiscard]] std::expected<void, NetworkKernelError> readLinks(NetworkSnapshot& snapshot);
  [[nodiscard]] std::expected<void, NetworkKernelError> readAddresses(NetworkSnapshot& snapshot);
  [[nodiscard]] std::expected<void, NetworkKernelError> readDefaultRoutes(
      std::uint8_t family, NetworkSnapshot& snapshot);

  LinkSurvey survey_;
  NetlinkSocket socket_;
};

}  // namespace lanternfold
