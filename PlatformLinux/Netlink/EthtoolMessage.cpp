#include "PlatformLinux/Netlink/EthtoolMessage.h"

#include <utility>

#include <libmnl/libmnl.h>
#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>

#include "PlatformLinux/Netlink/AttributeTable.h"

namespace lanternfold {

namespace {

constexpr std::uint64_t bitsPerMegabit = 1'000'000;
// Far more than any request of this file needs.
constexpr std::size_t requestCapacity = 256;

constexpr AttributeTable familyTable(std::array{
    numberAttribute<std::uint16_t>(CTRL_ATTR_FAMILY_ID, "CTRL_ATTR_FAMILY_ID",
                                   AttributePresence::required),
});

constexpr AttributeTable linkModesTable(std::array{
    nestedAttribute(ETHTOOL_A_LINKMODES_HEADER, "ETHTOOL_A_LINKMODES_HEADER"),
    numberAttribute<std::uint32_t>(ETHTOOL_A_LINKMODES_SPEED, "ETHTOOL_A_LINKMODES_SPEED"),
});

using LinkModesAttributes = decltype(linkModesTable)::Attributes;

constexpr AttributeTable headerTable(std::array{
    numberAttribute<std::uint32_t>(ETHTOOL_A_HEADER_DEV_INDEX, "ETHTOOL_A_HEADER_DEV_INDEX",
                                   AttributePresence::required),
});

// A request under construction; libmnl lays out headers and attributes in the bytes it is given.
class GenericRequest {
 public:
  GenericRequest(std::uint16_t type, std::uint16_t flags, std::uint8_t command)
      : bytes_(requestCapacity), header_(mnl_nlmsg_put_header(bytes_.data())) {
    header_->nlmsg_type = type;
    header_->nlmsg_flags = static_cast<std::uint16_t>(NLM_F_REQUEST | flags);
    auto* generic =
        static_cast<genlmsghdr*>(mnl_nlmsg_put_extra_header(header_, sizeof(genlmsghdr)));
    generic->cmd = command;
    generic->version = 1;
  }

  [[nodiscard]] nlmsghdr* header() { return header_; }

  [[nodiscard]] NetlinkRequest finished() {
    bytes_.resize(header_->nlmsg_len);
    return std::move(bytes_);
  }

 private:
  NetlinkRequest bytes_;
  nlmsghdr* header_;
};

template <std::size_t Count>
std::expected<AttributeSet<Count>, DecodeError> genericAttributes(
    const NetlinkMessage& message, const AttributeTable<Count>& table) {
  ByteReader reader(message.payload);
  if (!reader.read<genlmsghdr>()) {
    return std::unexpected(DecodeError{DecodeProblem::truncated, "genlmsghdr"});
  }
  return table.parse(reader.takeRest());
}

std::expected<std::uint32_t, DecodeError> interfaceIndexOf(const LinkModesAttributes& attributes) {
  const auto nested = attributes.bytes(ETHTOOL_A_LINKMODES_HEADER);
  if (!nested) {
    return std::unexpected(DecodeError{DecodeProblem::missing, "ETHTOOL_A_LINKMODES_HEADER"});
  }
  const auto header = headerTable.parse(*nested);
  if (!header) return std::unexpected(header.error());
  const auto index = header->number<std::uint32_t>(ETHTOOL_A_HEADER_DEV_INDEX).value();
  if (index == 0) {
    return std::unexpected(DecodeError{DecodeProblem::badValue, "ETHTOOL_A_HEADER_DEV_INDEX"});
  }
  return index;
}

// The masks of modes, which nobody reads here, are a tenth as long when they are compact.
NetlinkRequest linkModesRequest(std::uint16_t family, std::uint16_t flags,
                                std::optional<std::uint32_t> interfaceIndex) {
  GenericRequest request(family, flags, ETHTOOL_MSG_LINKMODES_GET);
  nlattr* nest = mnl_attr_nest_start(request.header(), ETHTOOL_A_LINKMODES_HEADER);
  if (interfaceIndex) {
    mnl_attr_put_u32(request.header(), ETHTOOL_A_HEADER_DEV_INDEX, *interfaceIndex);
  }
  mnl_attr_put_u32(request.header(), ETHTOOL_A_HEADER_FLAGS, ETHTOOL_FLAG_COMPACT_BITSETS);
  mnl_attr_nest_end(request.header(), nest);
  return request.finished();
}

}  // namespace

NetlinkRequest ethtoolFamilyRequest() {
  GenericRequest request(GENL_ID_CTRL, NLM_F_ACK, CTRL_CMD_GETFAMILY);
  mnl_attr_put_strz(request.header(), CTRL_ATTR_FAMILY_NAME, ETHTOOL_GENL_NAME);
  return request.finished();
}

std::expected<std::uint16_t, DecodeError> decodeFamilyIdentifier(const NetlinkMessage& message) {
  const auto attributes = genericAttributes(message, familyTable);
  if (!attributes) return std::unexpected(attributes.error());
  return attributes->number<std::uint16_t>(CTRL_ATTR_FAMILY_ID).value();
}

NetlinkRequest linkSpeedRequest(std::uint16_t family, std::uint32_t interfaceIndex) {
  return linkModesRequest(family, NLM_F_ACK, interfaceIndex);
}

NetlinkRequest linkSpeedDumpRequest(std::uint16_t family) {
  return linkModesRequest(family, NLM_F_DUMP, std::nullopt);
}

std::expected<LinkSpeed, DecodeError> decodeLinkSpeed(const NetlinkMessage& message) {
  const auto attributes = genericAttributes(message, linkModesTable);
  if (!attributes) return std::unexpected(attributes.error());
  const auto index = interfaceIndexOf(*attributes);
  if (!index) return std::unexpected(index.error());
  LinkSpeed speed;
  speed.interfaceIndex = *index;
  const auto megabits = attributes->number<std::uint32_t>(ETHTOOL_A_LINKMODES_SPEED);
  if (megabits && *megabits != static_cast<std::uint32_t>(SPEED_UNKNOWN)) {
    speed.bitsPerSecond = *megabits * bitsPerMegabit;
  }
  return speed;
}

}  // namespace lanternfold
