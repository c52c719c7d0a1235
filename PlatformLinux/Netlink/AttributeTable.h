// Decoding attributes by tables: which attributes a decoder reads, how long each may be and which
// must be there.
//
// Made by: each decoder, as a constant on top of its file. Read by: the one attribute walk.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <limits>
#include <optional>
#include <span>
#include <string_view>

#include "PlatformLinux/Netlink/ByteReader.h"
#include "PlatformLinux/Netlink/DecodeError.h"
#include "Support/FatalError.h"

namespace lanternfold {

enum class AttributeKind {
  number,  ///< exactly `minimumSize` bytes
  text,    ///< at most `maximumSize` bytes, one of which is the terminator
  bytes,   ///< between `minimumSize` and `maximumSize` bytes
  nested,  ///< attributes
  flag,    ///< only its presence counts
};

enum class AttributePresence {
  optional,
  required,
  expendable,  ///< optional; one that makes no sense, or is there twice, counts as not there
};

struct AttributePolicy {
  std::uint16_t type = 0;
  std::string_view name;  ///< the kernel header's name, for errors
  AttributeKind kind = AttributeKind::flag;
  std::size_t minimumSize = 0;
  std::size_t maximumSize = std::numeric_limits<std::size_t>::max();
  AttributePresence presence = AttributePresence::optional;
};

template <typename Number>
[[nodiscard]] consteval AttributePolicy numberAttribute(
    int type, std::string_view name, AttributePresence presence = AttributePresence::optional) {
  return {static_cast<std::uint16_t>(type),
          name,
          AttributeKind::number,
          sizeof(Number),
          sizeof(Number),
          presence};
}

/// Text of at most `maximumSize` bytes with its terminator.
[[nodiscard]] consteval AttributePolicy textAttribute(
    int type, std::string_view name, std::size_t maximumSize,
    AttributePresence presence = AttributePresence::optional) {
  return {static_cast<std::uint16_t>(type), name, AttributeKind::text, 1, maximumSize, presence};
}

[[nodiscard]] consteval AttributePolicy bytesAttribute(
    int type, std::string_view name, std::size_t minimumSize,
    std::size_t maximumSize = std::numeric_limits<std::size_t>::max(),
    AttributePresence presence = AttributePresence::optional) {
  return {static_cast<std::uint16_t>(type),
          name,
          AttributeKind::bytes,
          minimumSize,
          maximumSize,
          presence};
}

[[nodiscard]] consteval AttributePolicy nestedAttribute(
    int type, std::string_view name, AttributePresence presence = AttributePresence::optional) {
  return {static_cast<std::uint16_t>(type),        name,    AttributeKind::nested, 0,
          std::numeric_limits<std::size_t>::max(), presence};
}

[[nodiscard]] consteval AttributePolicy flagAttribute(int type, std::string_view name) {
  return {static_cast<std::uint16_t>(type), name, AttributeKind::flag};
}

/// The bytes of one attribute; none when it was not there.
using AttributeBytes = std::optional<std::span<const std::uint8_t>>;

/// Where each attribute number of a table stands in it.
class AttributeSlots {
 public:
  static constexpr std::size_t maximumType = 320;
  static constexpr std::uint8_t noSlot = 0xFF;

  constexpr AttributeSlots() { slots_.fill(noSlot); }

  constexpr void set(std::uint16_t type, std::size_t slot) {
    slots_.at(type) = static_cast<std::uint8_t>(slot);
  }
  /// `noSlot` for a number that the table does not list.
  [[nodiscard]] constexpr std::uint8_t of(std::uint16_t type) const {
    return type < maximumType ? slots_[type] : noSlot;
  }

 private:
  std::array<std::uint8_t, maximumType> slots_{};
};

/// The attributes of one message that passed a table of `Count`: sizes are as the table says. Views
/// of the message, and valid as long as its bytes.
template <std::size_t Count>
class AttributeSet {
 public:
  explicit AttributeSet(const AttributeSlots& slots) : slots_(&slots) {}

  [[nodiscard]] bool has(std::uint16_t type) const { return (present_ >> slot(type) & 1U) != 0; }
  [[nodiscard]] AttributeBytes bytes(std::uint16_t type) const {
    return has(type) ? AttributeBytes(values_[slot(type)]) : std::nullopt;
  }
  /// A number in this machine's byte order.
  template <typename Number>
  [[nodiscard]] std::optional<Number> number(std::uint16_t type) const {
    return has(type) ? ByteReader(values_[slot(type)]).read<Number>() : std::nullopt;
  }
  /// Text up to its terminator.
  [[nodiscard]] std::optional<std::string_view> text(std::uint16_t type) const {
    if (!has(type)) return std::nullopt;
    const auto* begin = reinterpret_cast<const char*>(values_[slot(type)].data());
    const std::string_view bytes(begin, values_[slot(type)].size());
    return bytes.substr(0, bytes.find('\0'));
  }

 private:
  template <std::size_t>
  friend class AttributeTable;

  [[nodiscard]] std::size_t slot(std::uint16_t type) const {
    const std::size_t position = slots_->of(type);
    if (position == AttributeSlots::noSlot) {
      fatalError("a decoder asked for an attribute that its table does not list");
    }
    return position;
  }

  const AttributeSlots* slots_;
  std::uint32_t present_ = 0;  // a bit for each slot
  std::array<std::span<const std::uint8_t>, Count> values_;
};

/// The walk that every table shares. Writes the value of each attribute that `policies` lists into
/// its slot and marks it in `present`; the error is that of `AttributeTable::parse`.
[[nodiscard]] std::optional<DecodeError> walkAttributes(
    std::span<const std::uint8_t> bytes, std::span<const AttributePolicy> policies,
    const AttributeSlots& slots, std::uint32_t& present,
    std::span<std::span<const std::uint8_t>> values);

template <std::size_t Count>
class AttributeTable {
 public:
  using Attributes = AttributeSet<Count>;

  static_assert(Count <= 32, "the set of attributes keeps a bit for each");

  /// `policies` stand in any order, each number once.
  consteval explicit AttributeTable(const std::array<AttributePolicy, Count>& policies)
      : policies_(policies) {
    for (std::size_t slot = 0; slot < Count; ++slot) {
      if (slots_.of(policies[slot].type) != AttributeSlots::noSlot) {
        throw "an attribute stands twice in a table";
      }
      slots_.set(policies[slot].type, slot);
    }
  }

  /// Walks `bytes` as attributes. Those that are not in the table are skipped; the flag bits of the
  /// type (nested, network byte order) are masked. Errors name the attribute, which is none of the
  /// expendable ones: duplicate, wrongSize, missing, badValue (a text without a terminator); or the
  /// header "nlattr": truncated, badLength.
  [[nodiscard]] std::expected<AttributeSet<Count>, DecodeError> parse(
      std::span<const std::uint8_t> bytes) const {
    // Filled where it is returned: a set is as large as its table.
    std::expected<AttributeSet<Count>, DecodeError> attributes(std::in_place, slots_);
    const auto error =
        walkAttributes(bytes, policies_, slots_, attributes->present_, attributes->values_);
    if (error) attributes = std::unexpected(*error);
    return attributes;
  }

 private:
  std::array<AttributePolicy, Count> policies_;
  AttributeSlots slots_;
};

}  // namespace lanternfold
