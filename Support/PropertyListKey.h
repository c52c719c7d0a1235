// The keys of property-list dictionaries: texts that are borrowed from the program where they are
// its own constants, and owned where they came from outside.
//
// Made by: `PropertyListDictionary`. Read by: whoever walks its entries.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "Support/FatalError.h"

namespace lanternfold {

/// A text that lives as long as the program: only the compiler can make one, of a literal.
class LiteralText {
 public:
  consteval explicit LiteralText(std::string_view text) : text_(text) {}
  constexpr operator std::string_view() const { return text_; }

 private:
  std::string_view text_;
};

/// Half the size of a string and, for a constant, without a copy: a walk over ten thousand
/// interfaces makes a quarter of a million keys out of twenty-two constants.
class PropertyListKey {
 public:
  PropertyListKey(LiteralText text) noexcept : PropertyListKey(std::string_view(text), false) {}
  PropertyListKey(std::string_view text) : PropertyListKey(copyOf(text), true) {}
  PropertyListKey(const std::string& text) : PropertyListKey(std::string_view(text)) {}
  PropertyListKey(const char* text) : PropertyListKey(std::string_view(text)) {}

  PropertyListKey(const PropertyListKey& other)
      : PropertyListKey(other.isOwned_ ? copyOf(other) : std::string_view(other), other.isOwned_) {}
  PropertyListKey(PropertyListKey&& other) noexcept : PropertyListKey({}, false) { swap(other); }
  PropertyListKey& operator=(PropertyListKey other) noexcept {
    swap(other);
    return *this;
  }
  ~PropertyListKey() {
    if (isOwned_) delete[] text_;
  }

  operator std::string_view() const { return {text_, size_}; }

  friend bool operator==(const PropertyListKey& left, std::string_view right) {
    return std::string_view(left) == right;
  }

 private:
  PropertyListKey(std::string_view text, bool isOwned) noexcept
      : text_(text.data()), size_(static_cast<std::uint32_t>(text.size())), isOwned_(isOwned) {}

  static std::string_view copyOf(std::string_view text) {
    if (!std::in_range<std::uint32_t>(text.size())) fatalError("a key is longer than 4 GiB");
    char* copy = new char[text.size()];
    std::ranges::copy(text, copy);
    return {copy, text.size()};
  }
  void swap(PropertyListKey& other) noexcept {
    std::swap(text_, other.text_);
    std::swap(size_, other.size_);
    std::swap(isOwned_, other.isOwned_);
  }

  const char* text_;
  std::uint32_t size_;
  bool isOwned_;  // whether `text_` is an array of its own
};

}  // namespace lanternfold
