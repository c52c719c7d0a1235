// The symbol of a kind of source.
#pragma once

#include <string>

#include "NetworkMonitor/Model/NetworkSourceCategory.h"
#include "ViewTree/View.h"

namespace lanternfold {

struct NetworkSourceIconView {
  NetworkSourceCategory sourceCategory;

  [[nodiscard]] View body() const;
};

/// The name of the symbol of `category`.
[[nodiscard]] std::string symbolNameOf(NetworkSourceCategory category);

}  // namespace lanternfold
