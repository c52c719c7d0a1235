#include "PlatformLinux/Netlink/AttributeTable.h"

#include <algorithm>
#include <cstring>

#include <linux/netlink.h>

#include "Support/FatalError.h"

namespace lanternfold {

namespace {

constexpr std::size_t paddedLength(std::size_t length) {
  return (length + (NLA_ALIGNTO - 1)) & ~std::size_t{NLA_ALIGNTO - 1};
}

std::optional<DecodeProblem> problemOf(const AttributePolicy& policy,
                                       std::span<const std::uint8_t> value) {
  if (value.size() < policy.minimumSize || value.size() > policy.maximumSize) {
    return DecodeProblem::wrongSize;
  }
  if (policy.kind == AttributeKind::text && std::ranges::find(value, 0) == value.end()) {
    return DecodeProblem::badValue;
  }
  return std::nullopt;
}

std::optional<DecodeError> missingAttribute(std::span<const AttributePolicy> policies,
                                            std::uint32_t present) {
  for (std::size_t slot = 0; slot < policies.size(); ++slot) {
    const bool isRequired = policies[slot].presence == AttributePresence::required;
    if (isRequired && (present >> slot & 1U) == 0) {
      return DecodeError{DecodeProblem::missing, policies[slot].name};
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<DecodeError> walkAttributes(std::span<const std::uint8_t> bytes,
                                          std::span<const AttributePolicy> policies,
                                          const AttributeSlots& slots, std::uint32_t& present,
                                          std::span<std::span<const std::uint8_t>> values) {
  // Without the reader's optionals: three dozen attributes of each link are only stepped over.
  std::uint32_t seen = 0;
  for (std::size_t offset = 0; offset < bytes.size();) {
    const std::size_t remaining = bytes.size() - offset;
    nlattr header{};
    if (remaining < sizeof(header)) return DecodeError{DecodeProblem::truncated, "nlattr"};
    std::memcpy(&header, &bytes[offset], sizeof(header));
    const std::size_t length = header.nla_len;
    if (length < sizeof(header)) return DecodeError{DecodeProblem::badLength, "nlattr"};
    if (length > remaining) return DecodeError{DecodeProblem::truncated, "nlattr"};
    const std::size_t slot = slots.of(static_cast<std::uint16_t>(header.nla_type & NLA_TYPE_MASK));
    if (slot != AttributeSlots::noSlot) {
      const auto value = bytes.subspan(offset + sizeof(header), length - sizeof(header));
      const AttributePolicy& policy = policies[slot];
      const std::uint32_t bit = 1U << slot;
      const auto problem = (seen & bit) != 0 ? DecodeProblem::duplicate : problemOf(policy, value);
      seen |= bit;
      if (!problem) {
        present |= bit;
        values[slot] = value;
      } else if (policy.presence == AttributePresence::expendable) {
        present &= ~bit;
      } else {
        return DecodeError{*problem, policy.name};
      }
    }
    // Past the end where the last attribute's padding is left out.
    offset += paddedLength(length);
  }
  return missingAttribute(policies, present);
}

}  // namespace lanternfold
