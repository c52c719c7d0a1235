// Bounded access to the bytes of a kernel message: every read says whether it stayed inside.
//
// Made and read by: the decoders of this room. The kernel whose messages are read here runs on
// little-endian machines only, and so numbers are little-endian whatever machine decodes them.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace lanternfold::darwin {

class MessageBytes {
 public:
  explicit MessageBytes(std::span<const std::byte> bytes) : bytes_(bytes) {}

  [[nodiscard]] std::size_t size() const { return bytes_.size(); }

  /// The number at `offset`; none when it does not lie inside as a whole.
  template <std::unsigned_integral Number>
  [[nodiscard]] std::optional<Number> number(std::size_t offset) const {
    const auto part = slice(offset, sizeof(Number));
    if (!part) return std::nullopt;
    std::uint64_t value = 0;
    for (std::size_t i = sizeof(Number); i > 0; --i) {
      value = (value << 8U) | std::to_integer<std::uint64_t>(part->bytes_[i - 1]);
    }
    return static_cast<Number>(value);
  }

  /// The `count` bytes at `offset`; none when they do not lie inside as a whole.
  [[nodiscard]] std::optional<MessageBytes> slice(std::size_t offset, std::size_t count) const {
    if (offset > bytes_.size() || count > bytes_.size() - offset) return std::nullopt;
    return MessageBytes(bytes_.subspan(offset, count));
  }

  /// Everything from `offset` on; none when that lies outside.
  [[nodiscard]] std::optional<MessageBytes> from(std::size_t offset) const {
    if (offset > bytes_.size()) return std::nullopt;
    return MessageBytes(bytes_.subspan(offset));
  }

  [[nodiscard]] std::span<const std::byte> bytes() const { return bytes_; }

 private:
  std::span<const std::byte> bytes_;
};

}  // namespace lanternfold::darwin
