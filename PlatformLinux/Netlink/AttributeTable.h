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

namespace lanternfold {

enum class AttributeKind {
  number,  ///< exactly `minimumSize` bytes
  text,    ///< at most `maximumSize` bytes, one of which is the terminator
  bytes,   ///< between `minimumSize` and `maximumSize` bytes
  nested,  ///< attributes
  flag,    ///< only its presence counts
};

enum class AttributePresence { optional, required };

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

[[nodiscard]] consteval AttributePolicy nestedAttribute(int type, std::string_view name) {
  return {static_cast<std::uint16_t>(type), name, AttributeKind::nested};
}

[[nodiscard]] consteval AttributePolicy flagAttribute(int type, std::string_view name) {
  return {static_cast<std::uint16_t>(type), name, AttributeKind::flag};
}

/// The bytes of one attribute; none when it was not there.
using AttributeBytes = std::optional<std::span<const std::uint8_t>>;

/// The attributes of one message that passed a table: sizes are as the table says.
class AttributeSet {
 public:
  /// The most attributes a table may list, and one more than the highest number it may list.
  static constexpr std::size_t maximumCount = 24;
  static constexpr std::size_t maximumType = 96;
  using Slots = std::array<std::uint8_t, maximumType>;

  explicit AttributeSet(const Slots& slots) : slots_(&slots) {}

  [[nodiscard]] bool has(int type) const { return bytes(type).has_value(); }
  [[nodiscard]] AttributeBytes bytes(int type) const { return values_[slot(type)]; }
  /// A number in this machine's byte order.
  template <typename Number>
  [[nodiscard]] std::optional<Number> number(int type) const {
    const auto value = bytes(type);
    return value ? ByteReader(*value).read<Number>() : std::nullopt;
  }
  /// Text up to its terminator; lives as long as the message.
  [[nodiscard]] std::optional<std::string_view> text(int type) const;

  void store(std::size_t slot, std::span<const std::uint8_t> value) { values_[slot] = value; }
  [[nodiscard]] bool stored(std::size_t slot) const { return values_[slot].has_value(); }

 private:
  [[nodiscard]] std::size_t slot(int type) const;

  const Slots* slots_;
  std::array<AttributeBytes, maximumCount> values_;
};

class AttributeTable {
 public:
  static constexpr std::uint8_t noSlot = 0xFF;

  /// `policies` are in any order, each type once; both are checked by the compiler.
  template <std::size_t Count>
  consteval explicit AttributeTable(const std::array<AttributePolicy, Count>& policies)
      : count_(Count) {
    static_assert(Count <= AttributeSet::maximumCount);
    slots_.fill(noSlot);
    for (std::size_t position = 0; position < Count; ++position) {
      policies_[position] = policies[position];
      std::uint8_t& slot = slots_[policies[position].type];
      if (slot != noSlot) throw "an attribute stands twice in a table";
      slot = static_cast<std::uint8_t>(position);
    }
  }

  /// Walks `bytes` as attributes. Those that are not in the table are skipped; the flag bits of the
  /// type (nested, network byte order) are masked. Errors name the attribute: duplicate, wrongSize,
  /// missing, badValue (a text without a terminator); or the header "nlattr": truncated, badLength.
  [[nodiscard]] std::expected<AttributeSet, DecodeError> parse(
      std::span<const std::uint8_t> bytes) const;

 private:
  [[nodiscard]] std::optional<DecodeError> storeAttribute(std::uint16_t type,
                                                          std::span<const std::uint8_t> value,
                                                          AttributeSet& attributes) const;

  std::size_t count_ = 0;
  std::array<AttributePolicy, AttributeSet::maximumCount> policies_{};
  AttributeSet::Slots slots_{};
};

}  // namespace lanternfold
