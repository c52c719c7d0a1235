// A string table that puts every key between guillemets, so that a test sees which texts were
// looked up and which were not.
#pragma once

#include <string>
#include <string_view>

#include "Platform/StringTable.h"

namespace lanternfold {

class BracketingStringTable final : public StringTable {
 public:
  [[nodiscard]] std::string localized(std::string_view key) const override {
    return "\u00AB" + std::string(key) + "\u00BB";
  }
};

}  // namespace lanternfold
