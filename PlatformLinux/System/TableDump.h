// Collects the records of one dump, also when the table kept changing while it was read.
//
// Read by: everybody who dumps a table over a `NetlinkSocket`.
#pragma once

#include <cstddef>
#include <expected>
#include <type_traits>
#include <utility>
#include <vector>

#include "PlatformLinux/Netlink/DumpTries.h"
#include "PlatformLinux/System/NetlinkSocket.h"

namespace lanternfold {

/// The records that `decode` makes of the messages of the answer; a message of which it makes none
/// is left out. `decode` gives an optional or an expected.
///
/// With `walk`, the place and the identities that `DumpTries::united` takes, a table that never
/// rested has everything that was there all the time. Without, the last try counts, which is right
/// for answers that the kernel does not walk in steps that a change could upset: routes and single
/// records. Errors: those of `NetlinkSocket::dump`, apart from interrupted.
///
/// `room` is how many records to make room for at once.
template <typename Decode, typename... Walk>
[[nodiscard]] auto dumpTableWithRoom(std::size_t room, NetlinkSocket& socket,
                                     const NetlinkRequest& request, Decode decode, Walk... walk) {
  using Record =
      typename std::decay_t<std::invoke_result_t<Decode, const NetlinkMessage&>>::value_type;
  using Table = std::expected<std::vector<Record>, NetworkKernelError>;
  DumpTries<Record> tries(room);
  const auto take = [&](const NetlinkMessage& message) {
    auto record = decode(message);
    if (record) tries.take(*std::move(record));
  };
  const auto answer = socket.dump(request, {.begin = [&] { tries.begin(); }, .message = take});
  if (answer) return Table(std::move(tries).ofLastTry());
  if (answer.error() != NetworkKernelError::interrupted) {
    return Table(std::unexpected(answer.error()));
  }
  if constexpr (sizeof...(Walk) == 0) {
    return Table(std::move(tries).ofLastTry());
  } else {
    return Table(std::move(tries).united(std::move(walk)...));
  }
}

/// The same, growing as the records come.
template <typename Decode, typename... Walk>
[[nodiscard]] auto dumpTable(NetlinkSocket& socket, const NetlinkRequest& request, Decode decode,
                             Walk... walk) {
  return dumpTableWithRoom(0, socket, request, std::move(decode), std::move(walk)...);
}

}  // namespace lanternfold
