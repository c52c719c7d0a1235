// A kernel at the other end of a netlink channel that answers each request with what a test wrote
// down: datagrams, failures of the receive call, silence.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "PlatformLinux/System/NetlinkChannel.h"
#include "Tests/PlatformLinux/Netlink/NetlinkFrames.h"

namespace lanternfold::test {

/// What one receive call gives.
struct ScriptedDatagram {
  /// Messages of the sequence number 7, as `message` makes them, get that of the request.
  Bytes bytes;
  ReceiveOutcome outcome = ReceiveOutcome::received;
  int errorNumber = 0;
};

using ScriptedAnswer = std::vector<ScriptedDatagram>;

/// Any thread, once what it answers is set. Outlives its channels.
class ScriptedNetlink {
 public:
  /// The answer to the next request that has none yet. A request beyond the last answer gets it
  /// again.
  void answer(ScriptedAnswer answer) { answers_.push_back(std::move(answer)); }
  /// What is asked makes the answer, whatever was asked before. Called by one thread at a time.
  using Rule = std::function<ScriptedAnswer(const NetlinkMessage& request)>;
  void answerBy(Rule rule) { rule_ = std::move(rule); }
  /// From now on sending fails with this errno.
  void failSending(int errorNumber) { sendError_ = errorNumber; }
  /// From now on no channel opens.
  void refuseChannels() { refusesChannels_ = true; }

  [[nodiscard]] NetlinkChannelOpener opener();
  [[nodiscard]] std::size_t requestCount() const { return requests_.size(); }
  /// Every request, as it was sent.
  [[nodiscard]] const std::vector<Bytes>& requests() const { return requests_; }
  [[nodiscard]] std::size_t openedCount() const { return openedCount_; }

 private:
  class Channel;

  [[nodiscard]] ScriptedAnswer answerTo(std::span<const std::uint8_t> request);

  std::mutex mutex_;  // guards the requests and the count while channels are in use
  Rule rule_;
  std::deque<ScriptedAnswer> answers_;
  std::vector<Bytes> requests_;
  std::size_t openedCount_ = 0;
  int sendError_ = 0;
  bool refusesChannels_ = false;
};

/// NLMSG_DONE, NLMSG_ERROR with a code (0 or an errno), and a message flagged as interrupted.
[[nodiscard]] Bytes doneMessage(int flags = 0);
[[nodiscard]] Bytes errorMessage(int errorNumber);
/// RTM_NEWLINK of an Ethernet link.
[[nodiscard]] Bytes linkMessage(std::uint32_t index, std::string_view name, int flags = 0);

}  // namespace lanternfold::test
