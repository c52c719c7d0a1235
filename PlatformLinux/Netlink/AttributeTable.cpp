#include "PlatformLinux/Netlink/AttributeTable.h"

#include <algorithm>

#include <linux/netlink.h>

#include "Support/FatalError.h"

namespace lanternfold {

namespace {

constexpr std::size_t padding(std::size_t length) {
  return (NLA_ALIGNTO - length % NLA_ALIGNTO) % NLA_ALIGNTO;
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
  ByteReader reader(bytes);
  while (!reader.empty()) {
    const auto header = reader.read<nlattr>();
    if (!header) return DecodeError{DecodeProblem::truncated, "nlattr"};
    if (header->nla_len < sizeof(nlattr)) return DecodeError{DecodeProblem::badLength, "nlattr"};
    const auto value = reader.take(header->nla_len - sizeof(nlattr));
    if (!value) return DecodeError{DecodeProblem::truncated, "nlattr"};
    reader.skipUpTo(padding(header->nla_len));
    const std::size_t slot = slots.of(static_cast<std::uint16_t>(header->nla_type & NLA_TYPE_MASK));
    if (slot == AttributeSlots::noSlot) continue;
    const AttributePolicy& policy = policies[slot];
    if ((present >> slot & 1U) != 0) return DecodeError{DecodeProblem::duplicate, policy.name};
    if (const auto problem = problemOf(policy, *value)) return DecodeError{*problem, policy.name};
    present |= 1U << slot;
    values[slot] = *value;
  }
  return missingAttribute(policies, present);
}

}  // namespace lanternfold
