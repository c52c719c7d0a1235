#include "PlatformLinux/Netlink/NetlinkMessage.h"

#include <linux/netlink.h>

namespace lanternfold {

namespace {

constexpr std::size_t paddedLength(std::size_t length) {
  return (length + (NLMSG_ALIGNTO - 1)) & ~static_cast<std::size_t>(NLMSG_ALIGNTO - 1);
}

// The kernel writes errors as negative numbers; one that cannot be negated is as good as any.
int positiveError(std::int32_t code) { return code < 0 && code != INT32_MIN ? -code : 5; }

}  // namespace

bool NetlinkMessage::dumpWasInterrupted() const { return (flags & NLM_F_DUMP_INTR) != 0; }

std::expected<std::optional<NetlinkMessage>, DecodeError> NetlinkMessageWalker::next() {
  if (reader_.empty()) return std::nullopt;
  const auto fail = [this](DecodeProblem problem) {
    reader_ = ByteReader({});
    return std::unexpected(DecodeError{problem, "nlmsghdr"});
  };
  const auto header = reader_.read<nlmsghdr>();
  if (!header) return fail(DecodeProblem::truncated);
  if (header->nlmsg_len < sizeof(nlmsghdr)) return fail(DecodeProblem::badLength);
  const auto payload = reader_.take(header->nlmsg_len - sizeof(nlmsghdr));
  if (!payload) return fail(DecodeProblem::truncated);
  reader_.skipUpTo(paddedLength(header->nlmsg_len) - header->nlmsg_len);
  return NetlinkMessage{.type = header->nlmsg_type,
                        .flags = header->nlmsg_flags,
                        .sequence = header->nlmsg_seq,
                        .port = header->nlmsg_pid,
                        .payload = *payload};
}

std::expected<NetlinkControlAnswer, DecodeError> decodeControl(const NetlinkMessage& message) {
  using enum NetlinkControl;
  switch (message.type) {
    case NLMSG_NOOP:
      return NetlinkControlAnswer{noOperation};
    case NLMSG_OVERRUN:
      return NetlinkControlAnswer{overrun};
    case NLMSG_ERROR:
    case NLMSG_DONE:
      break;
    default:
      return NetlinkControlAnswer{none};
  }
  const bool isDone = message.type == NLMSG_DONE;
  const auto code = ByteReader(message.payload).read<std::int32_t>();
  if (!code && !isDone) return std::unexpected(DecodeError{DecodeProblem::truncated, "nlmsgerr"});
  if (code.value_or(0) == 0) return NetlinkControlAnswer{isDone ? done : acknowledgment};
  return NetlinkControlAnswer{failure, positiveError(*code)};
}

}  // namespace lanternfold
