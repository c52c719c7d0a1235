// A string table that holds what a test puts into it; every other key is its own text.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "Platform/StringTable.h"

namespace lanternfold {

class FakeStringTable final : public StringTable {
 public:
  FakeStringTable() = default;
  explicit FakeStringTable(std::map<std::string, std::string, std::less<>> texts)
      : texts_(std::move(texts)) {}

  void set(std::string key, std::string text) { texts_[std::move(key)] = std::move(text); }

  /// Numbers are written with it instead of the point.
  void setDecimalSeparator(std::string separator) { decimalSeparator_ = std::move(separator); }

  [[nodiscard]] std::string localized(std::string_view key) const override {
    const auto text = texts_.find(key);
    return text == texts_.end() ? std::string(key) : text->second;
  }

  [[nodiscard]] std::string localizedDecimal(std::string_view digits) const override {
    std::string number(digits);
    if (const auto point = number.find('.'); point != std::string::npos) {
      number.replace(point, 1, decimalSeparator_);
    }
    return number;
  }

 private:
  std::map<std::string, std::string, std::less<>> texts_;
  std::string decimalSeparator_ = ".";
};

}  // namespace lanternfold
