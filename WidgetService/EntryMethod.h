// The methods by which a host asks for entries.
//
// Used by: whoever writes such a request or reads it.
#pragma once

#include <string_view>

#include "Support/FatalError.h"
#include "WidgetService/ServiceMessage.h"

namespace lanternfold {

[[nodiscard]] constexpr std::string_view entryMethod(EntryCall::Kind entry) {
  switch (entry) {
    case EntryCall::Kind::placeholder:
      return "widget/placeholder";
    case EntryCall::Kind::snapshot:
      return "widget/snapshot";
    case EntryCall::Kind::timeline:
      return "widget/timeline";
  }
  fatalError("a kind of entry has no method");
}

}  // namespace lanternfold
