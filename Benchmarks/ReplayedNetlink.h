// A kernel's side of netlink for machines without a radio: every request is answered with the same
// prepared datagrams, over a pair of local sockets, by a thread of its own.
//
// Made by: the benchmarks of the Wi-Fi. What the thread does is in nobody's processor time but its
// own; both sides of a ratio wait for it alike.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include "PlatformLinux/System/NetlinkChannel.h"

namespace lanternfold {

/// Outlives its channels. One channel at a time.
class ReplayedNetlink {
 public:
  using Datagrams = std::vector<std::vector<std::uint8_t>>;
  /// The message type, and the command of generic netlink; 0 for other protocols.
  using Question = std::pair<std::uint16_t, std::uint8_t>;

  /// `answers` are whole datagrams, whose headers get the sequence number of the request. A
  /// question that has no answer stops the program.
  ReplayedNetlink(bool isGeneric, std::map<Question, Datagrams> answers);
  ~ReplayedNetlink();
  ReplayedNetlink(const ReplayedNetlink&) = delete;
  ReplayedNetlink& operator=(const ReplayedNetlink&) = delete;

  [[nodiscard]] NetlinkChannelOpener opener() const;

 private:
  void serve();

  const bool isGeneric_;
  std::map<Question, Datagrams> answers_;
  std::array<int, 2> sockets_{};
  std::thread thread_;
};

}  // namespace lanternfold
