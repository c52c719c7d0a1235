// The string table of the benchmarks: every key is its own text.
#pragma once

#include <string>
#include <string_view>

#include "Platform/StringTable.h"

namespace lanternfold {

class UntranslatedTexts final : public StringTable {
 public:
  [[nodiscard]] std::string localized(std::string_view key) const override {
    return std::string(key);
  }
};

}  // namespace lanternfold
