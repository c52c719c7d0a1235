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

  [[nodiscard]] std::string localized(std::string_view key) const override {
    const auto text = texts_.find(key);
    return text == texts_.end() ? std::string(key) : text->second;
  }

 private:
  std::map<std::string, std::string, std::less<>> texts_;
};

}  // namespace lanternfold
