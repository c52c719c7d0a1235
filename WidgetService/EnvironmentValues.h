// Values that reach widgets and views from around them, each under a key that is a type.
//
// A key names its value's type and its default:
//   struct SomeEnvironmentKey { using Value = int; static Value defaultValue() { return 1; } };
#pragma once

#include <any>
#include <typeindex>
#include <typeinfo>
#include <unordered_map>
#include <utility>

namespace lanternfold {

/// A plain value. What was not set has its key's default.
class EnvironmentValues {
 public:
  template <typename Key>
  [[nodiscard]] typename Key::Value get() const {
    const auto found = values_.find(typeid(Key));
    if (found == values_.end()) return Key::defaultValue();
    return std::any_cast<const typename Key::Value&>(found->second);
  }

  template <typename Key>
  void set(typename Key::Value value) {
    values_.insert_or_assign(typeid(Key), std::move(value));
  }

 private:
  std::unordered_map<std::type_index, std::any> values_;
};

}  // namespace lanternfold
