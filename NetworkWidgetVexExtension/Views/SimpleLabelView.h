// A row's label: small bold text on a translucent rounded rectangle.
#pragma once

#include <string>

#include "ViewTree/View.h"

namespace lanternfold {

struct SimpleLabelView {
  std::string value;

  [[nodiscard]] View body() const;
};

}  // namespace lanternfold
