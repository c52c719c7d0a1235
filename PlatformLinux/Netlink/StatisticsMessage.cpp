#include "PlatformLinux/Netlink/StatisticsMessage.h"

#include <linux/if_link.h>
#include <linux/rtnetlink.h>

#include "PlatformLinux/Netlink/AttributeTable.h"

namespace lanternfold {

namespace {

constexpr AttributeTable statisticsTable(std::array{
    bytesAttribute(IFLA_STATS_LINK_64, "IFLA_STATS_LINK_64", sizeof(LinkCounters64),
                   std::numeric_limits<std::size_t>::max(), AttributePresence::required),
});

}  // namespace

std::expected<StatisticsMessage, DecodeError> decodeStatisticsMessage(
    const NetlinkMessage& message) {
  if (message.type != RTM_NEWSTATS) {
    return std::unexpected(DecodeError{DecodeProblem::wrongMessage, "nlmsg_type"});
  }
  ByteReader reader(message.payload);
  const auto header = reader.read<if_stats_msg>();
  if (!header) return std::unexpected(DecodeError{DecodeProblem::truncated, "if_stats_msg"});
  if (header->ifindex == 0) {
    return std::unexpected(DecodeError{DecodeProblem::badValue, "ifindex"});
  }
  const auto attributes = statisticsTable.parse(reader.takeRest());
  if (!attributes) return std::unexpected(attributes.error());
  const auto bytes = attributes->bytes(IFLA_STATS_LINK_64).value();
  return StatisticsMessage{header->ifindex, ByteReader(bytes).read<LinkCounters64>().value()};
}

}  // namespace lanternfold
