// A view of bytes from outside that can only shrink. Every decoder reads through it, so that no
// length a sender claims is ever followed further than the bytes that really arrived.
//
// Made by: the message and attribute walkers. Read by: the decoders.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <type_traits>

namespace lanternfold {

class ByteReader {
 public:
  explicit ByteReader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  [[nodiscard]] std::size_t remaining() const { return bytes_.size(); }
  [[nodiscard]] bool empty() const { return bytes_.empty(); }

  /// Copies a value out, in the byte order of this machine; none, and nothing is consumed, when the
  /// bytes do not suffice.
  template <typename Value>
    requires std::is_trivially_copyable_v<Value>
  [[nodiscard]] std::optional<Value> read() {
    if (bytes_.size() < sizeof(Value)) return std::nullopt;
    Value value;
    std::memcpy(&value, bytes_.data(), sizeof(Value));
    bytes_ = bytes_.subspan(sizeof(Value));
    return value;
  }

  /// The next `size` bytes; none, and nothing is consumed, when there are fewer.
  [[nodiscard]] std::optional<std::span<const std::uint8_t>> take(std::size_t size) {
    if (bytes_.size() < size) return std::nullopt;
    const auto taken = bytes_.first(size);
    bytes_ = bytes_.subspan(size);
    return taken;
  }

  /// Everything that is left; the reader is empty afterwards.
  [[nodiscard]] std::span<const std::uint8_t> takeRest() {
    const auto rest = bytes_;
    bytes_ = {};
    return rest;
  }

  /// Skips padding: at most `size` bytes, fewer at the end.
  void skipUpTo(std::size_t size) { bytes_ = bytes_.subspan(std::min(size, bytes_.size())); }

 private:
  std::span<const std::uint8_t> bytes_;
};

}  // namespace lanternfold
