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

}  // namespace

std::optional<std::string_view> AttributeSet::text(int type) const {
  const auto value = bytes(type);
  if (!value) return std::nullopt;
  const auto end = std::ranges::find(*value, 0);
  return std::string_view(reinterpret_cast<const char*>(value->data()),
                          static_cast<std::size_t>(end - value->begin()));
}

std::size_t AttributeSet::slot(int type) const {
  const auto position = static_cast<std::size_t>(type);
  if (position >= slots_->size() || (*slots_)[position] == AttributeTable::noSlot) {
    fatalError("a decoder asked for an attribute that its table does not list");
  }
  return (*slots_)[position];
}

std::expected<AttributeSet, DecodeError> AttributeTable::parse(
    std::span<const std::uint8_t> bytes) const {
  AttributeSet attributes(slots_);
  ByteReader reader(bytes);
  while (!reader.empty()) {
    const auto header = reader.read<nlattr>();
    if (!header) return std::unexpected(DecodeError{DecodeProblem::truncated, "nlattr"});
    if (header->nla_len < sizeof(nlattr)) {
      return std::unexpected(DecodeError{DecodeProblem::badLength, "nlattr"});
    }
    const auto value = reader.take(header->nla_len - sizeof(nlattr));
    if (!value) return std::unexpected(DecodeError{DecodeProblem::truncated, "nlattr"});
    reader.skipUpTo(padding(header->nla_len));
    const auto type = static_cast<std::uint16_t>(header->nla_type & NLA_TYPE_MASK);
    if (const auto error = storeAttribute(type, *value, attributes)) return std::unexpected(*error);
  }
  for (std::size_t slot = 0; slot < count_; ++slot) {
    if (policies_[slot].presence == AttributePresence::required && !attributes.stored(slot)) {
      return std::unexpected(DecodeError{DecodeProblem::missing, policies_[slot].name});
    }
  }
  return attributes;
}

std::optional<DecodeError> AttributeTable::storeAttribute(std::uint16_t type,
                                                          std::span<const std::uint8_t> value,
                                                          AttributeSet& attributes) const {
  const std::uint8_t slot = type < slots_.size() ? slots_[type] : noSlot;
  if (slot == noSlot) return std::nullopt;
  const AttributePolicy& policy = policies_[slot];
  if (attributes.stored(slot)) return DecodeError{DecodeProblem::duplicate, policy.name};
  if (const auto problem = problemOf(policy, value)) return DecodeError{*problem, policy.name};
  attributes.store(slot, value);
  return std::nullopt;
}

}  // namespace lanternfold
