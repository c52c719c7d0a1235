// The algebra of option sets: small sets whose members are the bits of a signed 64-bit raw value.
//
// A concrete set derives from `OptionSet<Itself>` and names its members as static functions.
// Everything is constexpr; nothing fails.
#pragma once

#include <cstdint>
#include <initializer_list>

namespace lanternfold {

template <typename Self>
class OptionSet {
 public:
  constexpr OptionSet() = default;
  /// Any raw value is accepted, bits without a named member included.
  constexpr explicit OptionSet(std::int64_t rawValue) : rawValue_(rawValue) {}
  constexpr OptionSet(std::initializer_list<Self> members) {
    for (const Self& member : members) rawValue_ |= member.rawValue();
  }

  [[nodiscard]] constexpr std::int64_t rawValue() const { return rawValue_; }
  [[nodiscard]] constexpr bool isEmpty() const { return rawValue_ == 0; }

  [[nodiscard]] constexpr Self unionWith(Self other) const {
    return Self(rawValue_ | other.rawValue());
  }
  [[nodiscard]] constexpr Self intersection(Self other) const {
    return Self(rawValue_ & other.rawValue());
  }
  [[nodiscard]] constexpr Self symmetricDifference(Self other) const {
    return Self(rawValue_ ^ other.rawValue());
  }
  [[nodiscard]] constexpr Self subtracting(Self other) const {
    return Self(rawValue_ & ~other.rawValue());
  }

  constexpr void formUnion(Self other) { rawValue_ |= other.rawValue(); }
  constexpr void formIntersection(Self other) { rawValue_ &= other.rawValue(); }
  constexpr void formSymmetricDifference(Self other) { rawValue_ ^= other.rawValue(); }
  constexpr void subtract(Self other) { rawValue_ &= ~other.rawValue(); }
  constexpr void insert(Self other) { formUnion(other); }
  constexpr void remove(Self other) { subtract(other); }

  /// Whether every member of `other` is in this set; true for the empty set.
  [[nodiscard]] constexpr bool contains(Self other) const { return other.isSubset(self()); }
  [[nodiscard]] constexpr bool isSubset(Self other) const {
    return (rawValue_ & ~other.rawValue()) == 0;
  }
  [[nodiscard]] constexpr bool isSuperset(Self other) const { return other.isSubset(self()); }
  [[nodiscard]] constexpr bool isDisjoint(Self other) const {
    return (rawValue_ & other.rawValue()) == 0;
  }

  friend constexpr bool operator==(const OptionSet&, const OptionSet&) = default;

 private:
  [[nodiscard]] constexpr Self self() const { return Self(rawValue_); }

  std::int64_t rawValue_ = 0;
};

}  // namespace lanternfold
